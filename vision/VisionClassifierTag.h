// SPDX-License-Identifier: GPL-3.0-or-later
// One node of a category's tag tree: a classifier identifier, its titles, its synonyms and narrower tags.
#pragma once

#include "vision/CategoryKey.h"

#include <QString>
#include <QStringList>

#include <utility>
#include <vector>

namespace lumaro::vision {

// A plain value; the default trees are immutable once built and may be read from any thread.
class VisionClassifierTag
{
public:
    QString name;       // snake_case classifier identifier ("consumer_electronics")
    QString titleCN;    // Chinese display title
    QString titleEN;    // English display title ("Tools & Utensils")
    QStringList synonyms; // further identifiers and words meaning the same
    std::vector<VisionClassifierTag> children;
};

using CategoryTable = std::vector<std::pair<const VisionClassifierTag*, CategoryKey>>;

// The eleven (root tree, category) pairs, in CategoryKey order; built once on first use, thread-safe.
const CategoryTable& defaultCategoryTable();

} // namespace lumaro::vision
