// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/NameGrouper.h"

#include "platform/Log.h"
#include "vision/GroupPrefix.h"

#include <cstdlib>

namespace lumaro::vision {

using platform::Log;

namespace {

const QString kTag = QStringLiteral("EDIT1_NAMEWORK");

QString typeOf(const FileInfo& file)
{
    return file.isPeopleType() ? QStringLiteral("PEOPLE") : QStringLiteral("非PEOPLE");
}

QString markOf(const FileInfo& file)
{
    return file.markTag.value_or(QStringLiteral("nil"));
}

QString boolText(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

// True, with the reason logged, when `file` cannot join the group of `previous`.
bool startsNewGroup(const FileInfo& previous, const FileInfo& file)
{
    const bool prefixMatches = file.prefix == previous.prefix;
    const bool extensionMatches = file.fileExtension == previous.fileExtension;
    const int lengthDifference = std::abs(file.nameLength - previous.nameLength);
    if (!prefixMatches || !extensionMatches || lengthDifference > 2) {
        Log::line(kTag, QStringLiteral("主逻辑不匹配，开始新组: 前缀匹配=") + boolText(prefixMatches)
                            + QStringLiteral(", 扩展名匹配=") + boolText(extensionMatches) + QStringLiteral(", 长度差=")
                            + QString::number(lengthDifference) + QStringLiteral(", 前文件类型(") + typeOf(previous)
                            + QStringLiteral(") -> 新文件类型(") + typeOf(file) + QLatin1Char(')'));
        return true;
    }
    if (file.isPeopleType() != previous.isPeopleType()) {
        Log::line(kTag, QStringLiteral("名称匹配但人物类型不同，开始新组: 前文件类型(") + typeOf(previous)
                            + QStringLiteral(", ") + markOf(previous) + QStringLiteral(") -> 新文件类型(") + typeOf(file)
                            + QStringLiteral(", ") + markOf(file) + QLatin1Char(')'));
        return true;
    }
    return false;
}

} // namespace

QList<GroupResult> NameGrouper::group(const QList<FileInfo>& files)
{
    QList<GroupResult> groups;
    for (qsizetype i = 0; i < files.size(); ++i) {
        if (i == 0 || startsNewGroup(files.at(i - 1), files.at(i)))
            groups.append(GroupResult{});
        groups.last().files.append(files.at(i));
    }
    const int count = int(groups.size());
    for (int k = 0; k < count; ++k) {
        GroupResult& group = groups[k];
        group.number = GroupPrefix::numberFor(k + 1, count);
        Log::line(kTag, QStringLiteral("组 ") + GroupPrefix::make(group.number) + QStringLiteral(": ")
                            + QString::number(group.files.size()) + QStringLiteral(" 个文件，前缀: ")
                            + group.files.constFirst().prefix);
    }
    return groups;
}

} // namespace lumaro::vision
