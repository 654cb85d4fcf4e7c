// SPDX-License-Identifier: GPL-3.0-or-later
// A picture's vision tags, read back from its folder's `_index/vision_index_*.json` for the reading-pose rules.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace lumaro::pose {

// Any thread, blocking. The newest run that analysed the picture wins (the order the app and grouping use); its
// "objects" and "scene" labels, in order and without repeats, are the tags. nullopt when the folder has no index
// or no entry for the picture; unreadable or malformed index files are skipped with a log line.
class PoseVisionTags
{
public:
    static std::optional<QStringList> forPicture(const QString& picturePath);
};

} // namespace lumaro::pose
