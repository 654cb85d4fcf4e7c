// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/FileInfo.h"

#include "vision/ClassificationMark.h"

namespace lumaro::vision {

FileInfo FileInfo::from(const QString& fileName, std::optional<QString> markTag)
{
    FileInfo info;
    info.fileName = fileName;
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    if (dot > 0) {
        info.nameWithoutExt = fileName.left(dot);
        info.fileExtension = fileName.mid(dot + 1).toLower();
    } else {
        info.nameWithoutExt = fileName;
    }
    info.prefix = prefixOf(info.nameWithoutExt);
    info.nameLength = int(info.nameWithoutExt.size());
    info.markTag = std::move(markTag);
    return info;
}

QString FileInfo::prefixOf(const QString& nameWithoutExt)
{
    qsizetype end = nameWithoutExt.size();
    while (end > 0) {
        const char16_t c = nameWithoutExt.at(end - 1).unicode();
        if (c < u'0' || c > u'9')
            break;
        --end;
    }
    return nameWithoutExt.left(end);
}

bool FileInfo::isPeopleType() const
{
    // The people family is every mark that extends the plain people mark: portrait, screenshot.
    static const QString peopleMark = markText(ClassificationMark::people);
    return markTag && markTag->startsWith(peopleMark);
}

} // namespace lumaro::vision
