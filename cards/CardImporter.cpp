// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/CardImporter.h"

#include "cards/CardImportJournal.h"
#include "cards/PairingFileTypes.h"
#include "cards/ShotNamePlanner.h"
#include "platform/FileCopier.h"
#include "platform/Log.h"
#include "platform/files/FileNameCodec.h"
#include "platform/metadata/XmpSidecar.h"

#include <QDir>
#include <QFileInfo>
#include <QLockFile>
#include <QRegularExpression>

namespace lumaro::cards {

using platform::Log;

namespace {

int highestRollNumber(const QString& importLocation)
{
    static const QRegularExpression rollName(QStringLiteral("^roll(\\d{2,})$"));
    int highest = 0;
    const QStringList names =
        QDir(importLocation).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QString& name : names) {
        const auto match = rollName.match(name);
        if (match.hasMatch())
            highest = std::max(highest, match.captured(1).toInt());
    }
    return highest;
}

QString rollName(int number)
{
    return QStringLiteral("roll%1").arg(number, 2, 10, QLatin1Char('0'));
}

// Makes the next free roll folder; mkdir (not mkpath) so that two imports never share one.
QString makeRollFolder(const QString& importLocation, QString* error)
{
    if (!QDir().mkpath(importLocation)) {
        *error = QStringLiteral("cannot create the import location ") + importLocation;
        return {};
    }
    for (int number = highestRollNumber(importLocation) + 1, attempts = 0; attempts < 100;
         ++number, ++attempts) {
        const QString folder = QDir(importLocation).filePath(rollName(number));
        if (QDir(importLocation).mkdir(rollName(number)))
            return folder;
        if (!QFileInfo::exists(folder)) {
            *error = QStringLiteral("cannot create ") + folder;
            return {};
        }
    }
    *error = QStringLiteral("no free roll folder in ") + importLocation;
    return {};
}

bool makeKindFolder(const QString& path)
{
    if (QFileInfo(path).isDir()) {
        Log::raw(QStringLiteral("   ✓ 文件夹已存在: ") + path);
        return true;
    }
    if (!QDir().mkpath(path))
        return false;
    Log::raw(QStringLiteral("   ✓ 创建文件夹: ") + path);
    return true;
}

struct Kind
{
    const QStringList* files;
    QString folderName;
    QString status;
};

// Partial copies of killed imports, in every roll no running import has locked. A roll's lock names its
// process, so the lock of a killed import is seen as stale and taken over.
int removePartialCopies(const QString& importLocation)
{
    int removed = 0;
    const QStringList names =
        QDir(importLocation).entryList({QStringLiteral("roll*")}, QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& name : names) {
        const QDir roll(QDir(importLocation).filePath(name));
        QLockFile lock(roll.filePath(CardImporter::lockFileName()));
        lock.setStaleLockTime(0);
        if (!lock.tryLock(0))
            continue;
        for (const QString& kind :
             {CardImporter::jpgFolderName(), CardImporter::rawFolderName(), CardImporter::videoFolderName()})
            removed += platform::FileCopier::removePartialCopies(roll.filePath(kind));
    }
    if (removed > 0)
        Log::raw(QStringLiteral("🧹 已清除中断导入留下的不完整文件: ") +
                 QString::number(removed));
    return removed;
}

// The picture's sidecars go with it, named after its copy ("IMG_1.CR2.xmp" → "IMG_1_1.CR2.xmp" when the copy
// took a free name). A "IMG_1.xmp" that the card's JPG and RAW share is copied beside each: they land in
// different folders, and each copy is then that picture's own. A sidecar already at its target (a resumed
// import) is kept. Returns the failures.
QList<FileFailure> copySidecars(const QString& source, const QString& copy)
{
    QList<FileFailure> failures;
    for (const QString& sidecar : platform::XmpSidecar::existingPaths(source)) {
        const QString target = platform::XmpSidecar::renamedCompanion(source, sidecar, copy);
        if (platform::FileNameCodec::exists(target))
            continue;
        const QFileInfo place(target);
        QString error;
        if (!platform::FileCopier::copyWithoutOverwriting(sidecar, place.path(), place.fileName(), &error)) {
            Log::raw(QStringLiteral("   ❌ 附属文件复制失败: ") + error + QStringLiteral(" - ") + sidecar);
            failures.append({sidecar, error});
        }
    }
    return failures;
}

} // namespace

QString CardImporter::shotKey(const QString& path)
{
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    const QString folder = slash >= 0 ? path.left(slash) : QString();
    return folder + QLatin1Char('\n') +
           PairingFileTypes::matchingKey(PairingFileTypes::stem(slash >= 0 ? path.mid(slash + 1) : path));
}

QString CardImporter::nextRollFolder(const QString& importLocation)
{
    return QDir(importLocation).filePath(rollName(highestRollNumber(importLocation) + 1));
}

ImportOutcome CardImporter::importFiles(const NewFileInfo& files, const QString& importLocation,
                                        const Callbacks& callbacks, CardImportJournal* journal)
{
    ImportOutcome outcome;
    if (importLocation.isEmpty()) {
        outcome.error = QStringLiteral("no import location is set");
        Log::raw(QStringLiteral("❌ ") + outcome.error);
        return outcome;
    }
    const auto report = [&callbacks](double done) {
        if (callbacks.progress)
            callbacks.progress(done);
    };
    const auto setStatus = [&callbacks](const QString& text) {
        if (callbacks.status)
            callbacks.status(text);
    };
    report(0);
    outcome.partialCopiesRemoved = removePartialCopies(importLocation);
    QString error;
    QString roll = journal ? journal->unfinishedRoll() : QString();
    outcome.resumed = !roll.isEmpty();
    if (outcome.resumed)
        Log::raw(QStringLiteral("📋 继续中断的导入: ") + roll);
    else
        roll = makeRollFolder(importLocation, &error);
    if (roll.isEmpty()) {
        outcome.error = error;
        Log::raw(QStringLiteral("❌ ") + error);
        return outcome;
    }
    QLockFile lock(QDir(roll).filePath(lockFileName()));
    lock.setStaleLockTime(0);
    if (!lock.tryLock(0)) {
        outcome.error = QStringLiteral("another import is copying into ") + roll;
        Log::raw(QStringLiteral("❌ ") + outcome.error);
        return outcome;
    }
    outcome.destination = roll;

    const std::vector<Kind> kinds{
        {&files.jpgFiles, jpgFolderName(), QStringLiteral("正在导入 JPG 文件...")},
        {&files.rawFiles, rawFolderName(), QStringLiteral("正在导入 RAW 文件...")},
        {&files.videoFiles, videoFolderName(), QString()},
    };
    Log::raw(QStringLiteral("📋 创建导入文件夹（仅创建有文件的类型）："));
    std::vector<bool> usable;
    QStringList kindFolders;
    QList<std::pair<QString, QString>> everyFile;
    for (const Kind& kind : kinds) {
        const QString folder = QDir(roll).filePath(kind.folderName);
        kindFolders.append(folder);
        for (const QString& source : *kind.files)
            everyFile.append({source, folder});
        const bool needed = !kind.files->isEmpty();
        const bool made = needed && makeKindFolder(folder);
        if (needed && !made)
            Log::raw(QStringLiteral("   ❌ 无法创建文件夹: ") + folder);
        usable.push_back(made);
    }
    if (journal) {
        const QStringList pictures = files.jpgFiles + files.rawFiles;
        journal->begin(roll, pictures.isEmpty() ? QString() : pictures.constFirst());
    }
    ShotNamePlanner planner(kindFolders);
    if (outcome.resumed) {
        planner.keepStems(journal->unfinishedStems());
        planner.setResuming(true);
    }
    const QHash<QString, PlannedName> names =
        planner.plan(everyFile, files.stamps, [journal](const QString& source) {
            return shotKey(journal ? journal->pathOnCard(source) : source);
        });

    const qint64 totalBytes = files.totalSize;
    const qsizetype totalFiles = files.fileCount();
    qint64 bytesDone = 0;
    qsizetype filesDone = 0;
    const auto overall = [&](qint64 inFlight) {
        return totalBytes > 0 ? double(bytesDone + inFlight) / double(totalBytes)
                              : double(filesDone) / double(std::max<qsizetype>(1, totalFiles));
    };
    for (size_t k = 0; k < kinds.size(); ++k) {
        const Kind& kind = kinds[k];
        const qsizetype count = kind.files->size();
        if (count == 0)
            continue;
        const bool isVideo = kind.folderName == videoFolderName();
        if (isVideo)
            Log::raw(QStringLiteral("📋 开始复制视频文件，共 ") + QString::number(count) +
                     QStringLiteral(" 个"));
        const QString folder = kindFolders.at(qsizetype(k));
        for (qsizetype i = 0; i < count; ++i) {
            const QString& source = kind.files->at(i);
            const QString name = QFileInfo(source).fileName();
            const PlannedName planned = names.value(source);
            setStatus(isVideo ? QString(QStringLiteral("正在导入视频文件... (") + QString::number(i + 1) +
                                        QLatin1Char('/') + QString::number(count) + QLatin1Char(')'))
                              : kind.status);
            const QString position =
                QStringLiteral("   [") + QString::number(i + 1) + QLatin1Char('/') + QString::number(count);
            const qint64 size =
                files.stamps.contains(source) ? files.stamps.value(source).size : QFileInfo(source).size();
            QString copyError = QStringLiteral("the folder could not be created");
            std::optional<QString> written;
            if (planned.alreadyThere) {
                written = QDir(folder).filePath(planned.name);
            } else if (usable[k]) {
                if (i + 1 < count)
                    platform::FileCopier::readAheadSoon(kind.files->at(i + 1));
                platform::CopyOptions options;
                options.progress = [&](qint64 copied, qint64 total) {
                    report(overall(copied));
                    return !callbacks.chunkCopied || callbacks.chunkCopied(source, copied, total);
                };
                written = platform::FileCopier::copyWithoutOverwriting(source, folder, planned.name,
                                                                       &copyError, options);
            }
            if (written) {
                if (QFileInfo(*written).fileName() != name) {
                    Log::raw(QStringLiteral("   ⚠️ 文件已存在，使用新路径: ") + *written);
                    outcome.renamedCount += 1;
                }
                Log::raw(position + QStringLiteral("] 复制成功: ") + name);
                outcome.copiedCount += 1;
                for (const FileFailure& failure : copySidecars(source, *written)) {
                    outcome.failedCount += 1;
                    outcome.failures.append(failure);
                }
                if (journal)
                    journal->fileCopied(source, files.stamps.value(source, {size, 0}), *written);
            } else {
                Log::raw(position + QStringLiteral("] 复制失败: ") + copyError + QStringLiteral(" - ") +
                         source);
                outcome.failedCount += 1;
                outcome.failures.append({source, copyError});
            }
            bytesDone += size;
            filesDone += 1;
            report(overall(0));
        }
        if (isVideo)
            Log::raw(QStringLiteral("📋 视频文件复制完成"));
    }
    // A failed file is offered again next time; the import is finished either way, and the next one opens a
    // roll.
    if (journal)
        journal->finish();
    report(1);
    setStatus(QStringLiteral("导入的文件已保存到：") + roll);
    return outcome;
}

} // namespace lumaro::cards
