// SPDX-License-Identifier: GPL-3.0-or-later
// Looks up which categories a list of classifier labels stands for.
#pragma once

#include "vision/CategoryKey.h"
#include "vision/VisionClassifierTag.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

namespace lumaro::vision {

// Built once from a category table; read-only afterwards, so any thread may call it. Labels match as whole
// lower-cased strings only: "ticket office" is not "ticket".
class VisionTagMatcher
{
public:
    explicit VisionTagMatcher(const CategoryTable& table = defaultCategoryTable());

    QSet<CategoryKey> categories(const QStringList& labels) const;

    // lower-cased token → the categories it stands for (one token may stand for several).
    QHash<QString, QSet<CategoryKey>> tokenMap;
};

} // namespace lumaro::vision
