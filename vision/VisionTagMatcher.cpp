// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/VisionTagMatcher.h"

namespace lumaro::vision {

namespace {

void addTokens(const VisionClassifierTag& tag, CategoryKey key, QHash<QString, QSet<CategoryKey>>& map)
{
    map[tag.name.toLower()].insert(key);
    map[tag.titleCN.toLower()].insert(key);
    map[tag.titleEN.toLower()].insert(key);
    for (const QString& synonym : tag.synonyms)
        map[synonym.toLower()].insert(key);
    for (const VisionClassifierTag& child : tag.children)
        addTokens(child, key, map);
}

} // namespace

VisionTagMatcher::VisionTagMatcher(const CategoryTable& table)
{
    for (const auto& [root, key] : table)
        addTokens(*root, key, tokenMap);
}

QSet<CategoryKey> VisionTagMatcher::categories(const QStringList& labels) const
{
    QSet<CategoryKey> found;
    for (const QString& label : labels) {
        const auto hit = tokenMap.constFind(label.toLower());
        if (hit != tokenMap.constEnd())
            found.unite(*hit);
    }
    return found;
}

} // namespace lumaro::vision
