// SPDX-License-Identifier: GPL-3.0-or-later
// One file as the grouping walk sees it: the parts of its name that neighbours are compared by, and its mark.
#pragma once

#include <QString>

#include <optional>

namespace lumaro::vision {

// A plain value; any thread. Names without a dot (or with only a leading dot) have an empty extension.
struct FileInfo
{
    QString fileName;
    // The name without its extension and without its trailing counter: what stays the same between
    // consecutive frames of one camera or app.
    QString prefix;
    int nameLength = 0;
    QString fileExtension; // lower-cased: IMG_1.JPG and IMG_2.jpg come from the same source
    QString nameWithoutExt;
    std::optional<QString> markTag;

    static FileInfo from(const QString& fileName, std::optional<QString> markTag = std::nullopt);

    // The prefix of a name without extension: the trailing run of ASCII digits is the camera's or app's frame
    // counter and is dropped; everything before it is kept as written, separators included, so
    //   IMG_0001 -> "IMG_",  DSC01234 -> "DSC",  微信图片_20240101 -> "微信图片_",
    //   IMG_20240101_123456 -> "IMG_20240101_" (a phone's frames of one day stay together),
    //   holiday -> "holiday" (no counter: the whole name).
    // A name that is all digits ("0001") has the empty prefix, so numbered scans still form a run.
    static QString prefixOf(const QString& nameWithoutExt);

    // People pictures and the rest never share a group; an absent mark is not of people type.
    bool isPeopleType() const;
};

} // namespace lumaro::vision
