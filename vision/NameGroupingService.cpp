// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/NameGroupingService.h"

#include "platform/FileCopier.h"
#include "platform/FolderAccessToken.h"
#include "platform/Log.h"
#include "vision/FileInfo.h"
#include "vision/GroupPrefix.h"
#include "vision/IndexFolder.h"
#include "vision/NameGrouper.h"
#include "vision/VisionMarkLoader.h"

#include <QDir>

#include <optional>

namespace lumaro::vision {

using platform::FolderAccessToken;
using platform::Log;

namespace {

const QString kTag = QStringLiteral("EDIT1_NAMEWORK");

// Brackets the file work with the folder's access, as every operation on a user folder does.
class FolderAccess
{
public:
    explicit FolderAccess(QString folder)
        : m_folder(std::move(folder))
        , m_started(FolderAccessToken::startAccess(m_folder))
    {
    }
    ~FolderAccess()
    {
        if (m_started)
            FolderAccessToken::stopAccess(m_folder);
    }
    FolderAccess(const FolderAccess&) = delete;
    FolderAccess& operator=(const FolderAccess&) = delete;
    bool started() const { return m_started; }

private:
    QString m_folder;
    bool m_started;
};

NameWorkResult finished(NameWorkOutcome outcome, const QString& message, bool dryRun)
{
    NameWorkResult result;
    result.outcome = outcome;
    result.message = message;
    result.dryRun = dryRun;
    return result;
}

// The folder the task works in: the token's folder when there is a token, else `path`.
std::optional<QString> resolveFolder(const QString& path, const NameWorkOptions& options, NameWorkResult& failure)
{
    QString folder = path;
    if (!options.folderToken.isEmpty()) {
        QString error;
        const auto resolved = FolderAccessToken::resolve(options.folderToken, &error);
        if (!resolved) {
            failure = finished(NameWorkOutcome::folderUnavailable, QStringLiteral("解析书签数据失败: ") + error,
                               options.dryRun);
            Log::line(kTag, failure.message);
            return std::nullopt;
        }
        folder = resolved->path;
    }
    if (!QDir(folder).exists()) {
        failure = finished(NameWorkOutcome::folderUnavailable, QStringLiteral("文件夹不存在: ") + folder, options.dryRun);
        Log::line(kTag, failure.message);
        return std::nullopt;
    }
    return folder;
}

QStringList safeNames(const QStringList& fileNames)
{
    QStringList names;
    names.reserve(fileNames.size());
    for (const QString& name : fileNames) {
        if (VisionMarkLoader::isSafeFileName(name))
            names << name;
    }
    return names;
}

void adopt(NameWorkResult& result, BatchRenameReport report)
{
    result.renames = std::move(report.renamed);
    result.skipped << report.skipped;
    result.failures = std::move(report.failures);
}

} // namespace

NameGroupingService::NameGroupingService(RenameFunction rename)
    : m_rename(std::move(rename))
{
}

RenameFunction NameGroupingService::defaultRename()
{
    return [](const QString& from, const QString& to, QString* error) {
        return platform::renameWithoutReplacing(from, to, error);
    };
}

NameWorkResult NameGroupingService::groupFiles(const QString& path, const QStringList& fileNames,
                                               const NameWorkOptions& options) const
{
    NameWorkResult result;
    const auto folder = resolveFolder(path, options, result);
    if (!folder)
        return result;
    const FolderAccess access(*folder);

    const auto marks = VisionMarkLoader::load(*folder, kTag);
    if (!marks) {
        Log::line(kTag, QStringLiteral("未找到 Vision 索引数据"));
        Log::line(kTag, QStringLiteral("索引文件路径应该是: ")
                            + QDir(IndexFolder::pathFor(*folder)).filePath(QStringLiteral("vision_index_*.json")));
        Log::line(kTag, QStringLiteral("建议: 请先为当前文件夹生成 Vision 索引，然后再进行文件名分组"));
        return finished(NameWorkOutcome::missingIndex, QStringLiteral("未找到 Vision 索引数据"), options.dryRun);
    }
    Log::line(kTag, QStringLiteral("从 Vision 索引加载到 ") + QString::number(marks->markByFileName.size())
                        + QStringLiteral(" 个 MARK 标签（共 ") + QString::number(marks->resultCount)
                        + QStringLiteral(" 条记录）"));

    const QStringList names = safeNames(fileNames);
    if (names.isEmpty())
        return finished(NameWorkOutcome::nothingToDo, QStringLiteral("目录中没有找到文件"), options.dryRun);
    QList<FileInfo> files;
    for (const QString& name : names) {
        if (GroupPrefix::isGrouped(name))
            continue;
        const auto mark = marks->markByFileName.constFind(name);
        files << FileInfo::from(name, mark == marks->markByFileName.cend() ? std::nullopt : std::optional(*mark));
    }
    Log::line(kTag, QStringLiteral("过滤后剩余 ") + QString::number(files.size()) + QStringLiteral(" 个未处理文件（已跳过 ")
                        + QString::number(names.size() - files.size()) + QStringLiteral(" 个已处理文件）"));
    if (files.isEmpty())
        return finished(NameWorkOutcome::nothingToDo, QStringLiteral("所有文件已经处理过，或没有可处理的文件"),
                        options.dryRun);

    const QList<GroupResult> groups = NameGrouper::group(files);
    QList<NameRename> renames;
    renames.reserve(files.size());
    for (const GroupResult& group : groups) {
        const QString prefix = GroupPrefix::make(group.number);
        for (const FileInfo& file : group.files)
            renames.append({file.fileName, prefix + file.fileName});
    }

    result = finished(NameWorkOutcome::completed, {}, options.dryRun);
    result.groupCount = int(groups.size());
    adopt(result, BatchRenamer(m_rename, QStringLiteral("重命名失败: ")).run(*folder, renames, options.dryRun, options.progress));
    if (!result.failures.isEmpty()) {
        result.message = QStringLiteral("部分文件重命名失败: ") + result.failures.join(QStringLiteral("; "));
        Log::line(QStringLiteral("❌ ") + kTag, result.message);
        return result;
    }
    result.message = (options.dryRun ? QStringLiteral("预览: %1 个组，%2 个文件将被重命名")
                                     : QStringLiteral("分组完成: %1 个组，%2 个文件已重命名"))
                         .arg(result.groupCount)
                         .arg(result.renames.size());
    if (!result.skipped.isEmpty())
        result.message += QStringLiteral("，%1 个文件已跳过").arg(result.skipped.size());
    Log::line(QStringLiteral("✅ ") + kTag, result.message);
    return result;
}

NameWorkResult NameGroupingService::cleanPrefixes(const QString& path, const QStringList& fileNames,
                                                  const NameWorkOptions& options) const
{
    NameWorkResult result;
    const auto folder = resolveFolder(path, options, result);
    if (!folder)
        return result;
    const FolderAccess access(*folder);
    if (!GroupPrefix::pattern().isValid()) {
        Log::line(kTag, QStringLiteral("正则表达式初始化失败"));
        return finished(NameWorkOutcome::failed, QStringLiteral("正则表达式初始化失败"), options.dryRun);
    }

    QList<NameRename> renames;
    QStringList emptyNames;
    for (const QString& name : safeNames(fileNames)) {
        if (!GroupPrefix::isGrouped(name))
            continue;
        const QString stripped = GroupPrefix::stripped(name);
        if (stripped.isEmpty()) {
            Log::line(kTag, QStringLiteral("移除前缀后文件名为空，跳过: ") + name);
            emptyNames << name;
            continue;
        }
        // "_G12_.jpg" would come back as ".jpg", which every file manager (and this app) hides.
        if (stripped.startsWith(QLatin1Char('.'))) {
            Log::line(kTag, QStringLiteral("移除前缀后文件名以点开头（会被隐藏），跳过: ") + name);
            emptyNames << name;
            continue;
        }
        renames.append({name, stripped});
    }
    const qsizetype prefixed = renames.size() + emptyNames.size();
    if (prefixed == 0)
        return finished(NameWorkOutcome::nothingToDo, QStringLiteral("没有找到包含分类前缀的文件"), options.dryRun);
    Log::line(kTag, QStringLiteral("找到 ") + QString::number(prefixed) + QStringLiteral(" 个包含分类前缀的文件"));

    result = finished(NameWorkOutcome::completed, {}, options.dryRun);
    result.skipped = emptyNames;
    adopt(result, BatchRenamer(m_rename, QStringLiteral("清理前缀失败: ")).run(*folder, renames, options.dryRun, options.progress));
    if (!result.failures.isEmpty()) {
        result.message = QStringLiteral("部分文件清理失败: ") + result.failures.join(QStringLiteral("; "));
        Log::line(QStringLiteral("❌ ") + kTag, result.message);
        return result;
    }
    result.message = (options.dryRun ? QStringLiteral("预览: %1 个文件将移除分类前缀")
                                     : QStringLiteral("清理完成: %1 个文件已移除分类前缀"))
                         .arg(result.renames.size());
    if (!result.skipped.isEmpty())
        result.message += QStringLiteral("，%1 个文件已跳过").arg(result.skipped.size());
    Log::line(QStringLiteral("✅ ") + kTag, result.message);
    return result;
}

} // namespace lumaro::vision
