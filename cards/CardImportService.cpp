// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/CardImportService.h"

#include "cards/ByteCountFormatter.h"
#include "cards/CardImportJournal.h"
#include "cards/CardScanner.h"

#include <QtConcurrent/QtConcurrentRun>

namespace lumaro::cards {

CardImportService::CardImportService(QObject* parent, QString storePath)
    : QObject(parent), m_storePath(std::move(storePath))
{
}

CardImportService::~CardImportService()
{
    m_cancelled = true;
    m_task.waitForFinished();
    m_scan.waitForFinished();
}

QString CardImportService::describe(const NewFileInfo& files)
{
    if (files.isEmpty())
        return QStringLiteral("没有发现新文件需要导入");
    return QStringLiteral("新文件信息：JPG ") + QString::number(files.jpgFiles.size()) +
           QStringLiteral("，RAW ") + QString::number(files.rawFiles.size()) + QStringLiteral("，视频 ") +
           QString::number(files.videoFiles.size()) + QStringLiteral("，共 ") +
           QString::number(files.fileCount()) + QStringLiteral(" 个  ·  复制体量: ") +
           ByteCountFormatter::string(files.totalSize);
}

ImportData CardImportService::scanCard(const QString& mountPath, const QString& storePath)
{
    ImportData data;
    data.sourcePath = mountPath;
    data.allFiles = CardScanner::scan(mountPath);
    QString error;
    const auto journal = CardImportJournal::open(mountPath, &error, storePath);
    if (!journal) {
        data.newFiles = data.allFiles;
        data.memoryError = error;
        return data;
    }
    data.newFiles = journal->withoutImported(data.allFiles);
    if (const auto card = journal->rememberedCard())
        data.lastImport = card->lastImport;
    data.resumeRoll = journal->unfinishedRoll();
    return data;
}

void CardImportService::scan(const QString& mountPath)
{
    m_scan = QtConcurrent::run([this, mountPath, storePath = m_storePath] {
        const ImportData data = scanCard(mountPath, storePath);
        QMetaObject::invokeMethod(
            this, [this, data] { Q_EMIT scanned(data); }, Qt::QueuedConnection);
    });
}

bool CardImportService::startImport(const ImportData& data, const QString& importLocation, bool everything)
{
    const NewFileInfo& chosen = everything ? data.allFiles : data.newFiles;
    if (m_importing || importLocation.isEmpty() || chosen.isEmpty())
        return false;
    m_importing = true;
    m_progress = 0;
    m_status.clear();
    m_cancelled = false;
    Q_EMIT changed();
    m_task = QtConcurrent::run([this, files = chosen, mountPath = data.sourcePath, importLocation, everything,
                                storePath = m_storePath] {
        CardImporter::Callbacks callbacks;
        double lastSent = -1;
        callbacks.progress = [this, &lastSent](double done) {
            // Chunks arrive by the hundred per second; the bar moves in steps of a thousandth.
            if (done < 1 && done - lastSent < 0.001)
                return;
            lastSent = done;
            QMetaObject::invokeMethod(
                this,
                [this, done] {
                    m_progress = done;
                    Q_EMIT changed();
                },
                Qt::QueuedConnection);
        };
        callbacks.status = [this](const QString& text) {
            QMetaObject::invokeMethod(
                this,
                [this, text] {
                    if (m_status != text) {
                        m_status = text;
                        Q_EMIT changed();
                    }
                },
                Qt::QueuedConnection);
        };
        callbacks.chunkCopied = [this](const QString&, qint64, qint64) { return !m_cancelled.load(); };
        QString error;
        const auto journal = CardImportJournal::open(mountPath, &error, storePath);
        if (journal && everything)
            journal->forgetUnfinished();
        const ImportOutcome outcome =
            CardImporter::importFiles(files, importLocation, callbacks, journal.get());
        QMetaObject::invokeMethod(
            this,
            [this, outcome] {
                m_importing = false;
                m_progress = 1;
                m_outcome = outcome;
                if (!outcome.error.isEmpty())
                    m_status = outcome.error;
                Q_EMIT changed();
                Q_EMIT finished(outcome);
            },
            Qt::QueuedConnection);
    });
    return true;
}

void CardImportService::cancel()
{
    m_cancelled = true;
}

} // namespace lumaro::cards
