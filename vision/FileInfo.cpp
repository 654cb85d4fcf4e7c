// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/FileInfo.h"

namespace lumaro::vision {

namespace {
const QString kPeopleMarkPrefix = QStringLiteral("MARK_PEOPLE");
}

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
    return markTag && markTag->startsWith(kPeopleMarkPrefix);
}

} // namespace lumaro::vision
