// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/WatermarkSorter.h"

#include "platform/FileCopier.h"
#include "platform/Log.h"
#include "platform/RegularFileReader.h"
#include "platform/files/FileNameCodec.h"
#include "vision/IndexFolder.h"
#include "vision/VisionIndexFile.h"
#include "vision/VisionIndexNaming.h"
#include "vision/VisionMarkLoader.h"
#include "vision/WatermarkIdentifier.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

namespace lumaro::vision {

using platform::FileNameCodec;
using platform::Log;

namespace {

const QString kTag = QStringLiteral("WATERMARK");
constexpr qint64 kMaxLogBytes = 64LL << 20;

struct MoveLog
{
    QString operation; // "move" or "copy"
    QString sourceFolderPath;
    QString targetFolderPath;
    QStringList createdFolders; // relative to the target folder ("" for the target folder itself)
    QList<WatermarkMove> moves;
    QList<bool> done;
    QString undoneAt;
};

QJsonObject toJson(const MoveLog& log, bool complete)
{
    QJsonArray moves;
    for (qsizetype i = 0; i < log.moves.size(); ++i) {
        const WatermarkMove& m = log.moves[i];
        moves.append(QJsonObject{{QStringLiteral("fileName"), m.fileName},
                                 {QStringLiteral("folder"), m.folder},
                                 {QStringLiteral("identifier"), m.identifier},
                                 {QStringLiteral("done"), log.done.value(i)}});
    }
    QJsonObject root{{QStringLiteral("operation"), log.operation},
                     {QStringLiteral("sourceFolderPath"), log.sourceFolderPath},
                     {QStringLiteral("targetFolderPath"), log.targetFolderPath},
                     {QStringLiteral("generatedAt"), QDateTime::currentDateTimeUtc().toString(Qt::ISODate)},
                     {QStringLiteral("complete"), complete},
                     {QStringLiteral("createdFolders"), QJsonArray::fromStringList(log.createdFolders)},
                     {QStringLiteral("moves"), moves}};
    if (!log.undoneAt.isEmpty())
        root.insert(QStringLiteral("undoneAt"), log.undoneAt);
    return root;
}

// Names read back from a log are never trusted as paths.
bool isPlainName(const QString& name)
{
    return VisionMarkLoader::isSafeFileName(name);
}

std::optional<MoveLog> readLog(const QString& path, QString* error)
{
    const std::optional<QByteArray> bytes = platform::RegularFileReader::read(path, kMaxLogBytes, error);
    if (!bytes)
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(*bytes);
    const QJsonObject root = document.object();
    MoveLog log;
    log.operation = root.value(QStringLiteral("operation")).toString();
    log.sourceFolderPath = root.value(QStringLiteral("sourceFolderPath")).toString();
    log.targetFolderPath = root.value(QStringLiteral("targetFolderPath")).toString();
    log.undoneAt = root.value(QStringLiteral("undoneAt")).toString();
    if (!document.isObject() ||
        (log.operation != QLatin1String("move") && log.operation != QLatin1String("copy")) ||
        !QDir::isAbsolutePath(log.sourceFolderPath) || !QDir::isAbsolutePath(log.targetFolderPath)) {
        *error = QStringLiteral("not a watermark move log");
        return std::nullopt;
    }
    for (const QJsonValue& value : root.value(QStringLiteral("createdFolders")).toArray()) {
        const QString folder = value.toString();
        if (folder.isEmpty() || isPlainName(folder))
            log.createdFolders << folder;
    }
    for (const QJsonValue& value : root.value(QStringLiteral("moves")).toArray()) {
        const QJsonObject o = value.toObject();
        WatermarkMove move{o.value(QStringLiteral("fileName")).toString(),
                           o.value(QStringLiteral("folder")).toString(),
                           o.value(QStringLiteral("identifier")).toString()};
        if (!isPlainName(move.fileName) || !isPlainName(move.folder))
            continue;
        log.moves << move;
        log.done << o.value(QStringLiteral("done")).toBool();
    }
    return log;
}

bool sameBytes(const QString& a, const QString& b)
{
    bool readA = false, readB = false;
    const QByteArray bytesA = FileNameCodec::readAll(a, &readA);
    const QByteArray bytesB = FileNameCodec::readAll(b, &readB);
    return readA && readB && bytesA == bytesB;
}

bool makeFolder(const QString& path, QStringList* created, const QString& relative)
{
    if (FileNameCodec::isDirectory(path))
        return true;
    if (FileNameCodec::exists(path) || !QDir().mkpath(path))
        return false;
    created->append(relative);
    return true;
}

} // namespace

WatermarkSorter::WatermarkSorter(platform::FileMover mover) : m_mover(std::move(mover)) {}

QString WatermarkSorter::logFileName(const QString& stamp)
{
    return QStringLiteral("watermark_moves_") + stamp + QStringLiteral(".json");
}

WatermarkSortReport WatermarkSorter::sort(const QString& folder, const QList<WatermarkResult>& results,
                                          const WatermarkSortOptions& options) const
{
    WatermarkSortReport report;
    MoveLog log;
    log.operation = options.copy ? QStringLiteral("copy") : QStringLiteral("move");
    log.sourceFolderPath = QDir(folder).absolutePath();
    log.targetFolderPath =
        QDir(options.targetFolder.isEmpty() ? log.sourceFolderPath : options.targetFolder).absolutePath();
    QSet<QString> seen;
    for (const WatermarkResult& r : results) {
        if (!isPlainName(r.fileName) || seen.contains(r.fileName))
            continue;
        seen.insert(r.fileName);
        if (!r.isIdentified()) {
            report.unidentified << r.fileName;
            continue;
        }
        const WatermarkMove move{r.fileName, WatermarkIdentifier::folderName(r.identifier), r.identifier};
        const QString target =
            log.targetFolderPath + QLatin1Char('/') + move.folder + QLatin1Char('/') + move.fileName;
        if (FileNameCodec::exists(target)) {
            report.skipped << move.fileName + QStringLiteral(" -> ") + move.folder + QLatin1Char('/') +
                                  move.fileName;
            Log::line(kTag, QStringLiteral("文件已存在，跳过: ") + target);
            continue;
        }
        log.moves << move;
        log.done << false;
    }
    if (options.dryRun) {
        report.moved = log.moves;
        return report;
    }
    if (log.moves.isEmpty())
        return report;
    const std::optional<QString> indexFolder = IndexFolder::ensure(log.sourceFolderPath, kTag);
    if (!indexFolder) {
        report.logRefused = true;
        return report;
    }
    const QString logPath =
        QDir(*indexFolder).filePath(logFileName(VisionIndexNaming::runStamp(QDateTime::currentDateTime())));
    QString error;
    if (!writeJsonAtomically(logPath, toJson(log, false), &error)) {
        Log::line(kTag, QStringLiteral("移动记录保存失败，未移动任何文件: ") + error);
        report.logRefused = true;
        return report;
    }
    report.logPath = logPath;
    if (!makeFolder(log.targetFolderPath, &log.createdFolders, QString())) {
        report.failures << log.targetFolderPath + QStringLiteral(": cannot make this folder");
        log.moves.clear();
    }
    for (qsizetype i = 0; i < log.moves.size(); ++i) {
        const WatermarkMove& move = log.moves[i];
        const QString from = log.sourceFolderPath + QLatin1Char('/') + move.fileName;
        const QString into = log.targetFolderPath + QLatin1Char('/') + move.folder;
        const QString to = into + QLatin1Char('/') + move.fileName;
        QString reason;
        if (!makeFolder(into, &log.createdFolders, move.folder)) {
            reason = QStringLiteral("cannot make the folder %1").arg(move.folder);
        } else if (options.copy) {
            const auto copied =
                platform::FileCopier::copyWithoutOverwriting(from, into, move.fileName, &reason);
            if (copied && QDir::cleanPath(*copied) != QDir::cleanPath(to)) {
                FileNameCodec::remove(*copied); // the name was taken meanwhile: this copy is surplus
                reason = QStringLiteral("%1 already exists").arg(to);
            } else if (copied) {
                log.done[i] = true;
            }
        } else {
            const platform::RenameResult result = m_mover.move(from, to);
            log.done[i] = result.ok;
            reason = result.error;
        }
        if (log.done[i]) {
            report.moved << move;
            Log::line(kTag, (options.copy ? QStringLiteral("复制: ") : QStringLiteral("移动: ")) +
                                move.fileName + QStringLiteral(" -> ") + move.folder);
        } else {
            report.failures << move.fileName + QStringLiteral(": ") + reason;
            Log::line(kTag, QStringLiteral("❌ 移动失败: ") + move.fileName + QStringLiteral(" (") + reason +
                                QLatin1Char(')'));
        }
        if (options.progress)
            options.progress(int(i + 1), int(log.moves.size()));
    }
    if (!writeJsonAtomically(logPath, toJson(log, true), &error))
        Log::line(kTag, QStringLiteral("移动记录更新失败: ") + error);
    return report;
}

WatermarkUndoReport WatermarkSorter::undo(const QString& logPath) const
{
    WatermarkUndoReport report;
    std::optional<MoveLog> log = readLog(logPath, &report.error);
    if (!log)
        return report;
    const bool copied = log->operation == QLatin1String("copy");
    for (const WatermarkMove& move : log->moves) {
        const QString home = log->sourceFolderPath + QLatin1Char('/') + move.fileName;
        const QString sorted =
            log->targetFolderPath + QLatin1Char('/') + move.folder + QLatin1Char('/') + move.fileName;
        const bool isSorted = FileNameCodec::isFile(sorted);
        if (!isSorted) {
            ++report.alreadyBack;
            continue;
        }
        if (copied) {
            if (!sameBytes(home, sorted)) {
                report.conflicts << move.fileName +
                                        QStringLiteral(": the copy differs from its original, kept");
                continue;
            }
            if (FileNameCodec::remove(sorted))
                ++report.restored;
            else
                report.conflicts << move.fileName + QStringLiteral(": cannot remove the copy");
            continue;
        }
        if (FileNameCodec::exists(home)) {
            report.conflicts << move.fileName + QStringLiteral(": a file of that name is back in ") +
                                    log->sourceFolderPath + QStringLiteral(", kept where it is");
            continue;
        }
        const platform::RenameResult result = m_mover.move(sorted, home);
        if (result.ok) {
            ++report.restored;
            Log::line(kTag, QStringLiteral("已放回: ") + move.fileName);
        } else {
            report.conflicts << move.fileName + QStringLiteral(": ") + result.error;
        }
    }
    // The folders the sort made go again once empty (rmdir refuses a folder that is not).
    for (auto it = log->createdFolders.crbegin(); it != log->createdFolders.crend(); ++it)
        QDir(log->targetFolderPath).rmdir(it->isEmpty() ? log->targetFolderPath : *it);
    log->undoneAt = QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
    QString error;
    if (!writeJsonAtomically(logPath, toJson(*log, true), &error))
        Log::line(kTag, QStringLiteral("移动记录更新失败: ") + error);
    return report;
}

} // namespace lumaro::vision
