// SPDX-License-Identifier: GPL-3.0-or-later
// Picks a picture's one category mark from its classifier labels and its size.
#pragma once

#include "vision/VisionClassifierTag.h"
#include "vision/VisionTagMatcher.h"

#include <QString>
#include <QStringList>

namespace lumaro::vision {

// Read-only after construction; any thread. Never fails: no labels give "MARK_UNTAG"; a zero or negative
// width is never "long" nor "large". Labels that match no category name the picture by its first non-blank
// label ("MARK_DIVERSE_SEA_TURTLE").
class VisionClassificationEngine
{
public:
    explicit VisionClassificationEngine(const CategoryTable& table = defaultCategoryTable());

    // The shared engine over the default trees.
    static const VisionClassificationEngine& shared();

    QString mark(const QStringList& recognizedObjects, const QStringList& sceneClassification, int pixelWidth,
                 int pixelHeight) const;

    // "MARK_DIVERSE_" + the cleaned first non-blank label, or empty when there is none or it cleans to nothing.
    static QString diverseMark(const QStringList& labels);

    VisionTagMatcher matcher;
    CategoryTable table;
};

} // namespace lumaro::vision
