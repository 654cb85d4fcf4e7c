// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/CardImportJournal.h"

#include "cards/CardImporter.h"
#include "cards/CardScanner.h"
#include "platform/ImageMetadata.h"
#include "platform/Log.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

namespace lumaro::cards {

using platform::Log;

std::unique_ptr<CardImportJournal> CardImportJournal::open(const QString& mountPath, QString* error,
                                                           const QString& storePath)
{
    std::unique_ptr<CardImportJournal> journal(new CardImportJournal);
    journal->m_store = std::make_unique<platform::RememberedCardStore>(storePath);
    if (!journal->m_store->open(error))
        return nullptr;
    journal->m_volume = platform::VolumeIdentity::of(mountPath);
    journal->m_scanRoot = QDir::cleanPath(QFileInfo(mountPath).absoluteFilePath());
    journal->m_card = journal->m_store->card(journal->m_volume.key());
    if (journal->m_card)
        journal->m_unfinished = journal->m_store->unfinishedImport(journal->m_card->id);
    return journal;
}

QString CardImportJournal::pathOnCard(const QString& source) const
{
    // Relative to the path as the scan was given it, so a link on the way to the card changes nothing.
    return QDir(m_scanRoot).relativeFilePath(QFileInfo(source).absoluteFilePath());
}

NewFileInfo CardImportJournal::withoutImported(const NewFileInfo& files) const
{
    if (!m_card)
        return files;
    const QSet<QString> imported = m_store->importedFileKeys(m_card->id);
    NewFileInfo kept;
    kept.skippedEntries = files.skippedEntries;
    kept.alreadyImportedCount = files.alreadyImportedCount;
    const auto filter = [&](const QStringList& from, QStringList& to) {
        for (const QString& path : from) {
            const CardFileStamp stamp = files.stamps.value(path);
            if (imported.contains(
                    platform::RememberedCardStore::fileKey(pathOnCard(path), stamp.size, stamp.modifiedMs))) {
                kept.alreadyImportedCount += 1;
                continue;
            }
            to.append(path);
            kept.stamps.insert(path, stamp);
            kept.totalSize += stamp.size;
        }
    };
    filter(files.jpgFiles, kept.jpgFiles);
    filter(files.rawFiles, kept.rawFiles);
    filter(files.videoFiles, kept.videoFiles);
    if (kept.alreadyImportedCount > files.alreadyImportedCount)
        Log::raw(QStringLiteral("📋 已导入过的文件: ") + QString::number(kept.alreadyImportedCount));
    return kept;
}

QString CardImportJournal::unfinishedRoll() const
{
    if (!m_unfinished || !QFileInfo(m_unfinished->roll).isDir())
        return {};
    return m_unfinished->roll;
}

QHash<QString, QString> CardImportJournal::unfinishedStems() const
{
    QHash<QString, QString> stems;
    if (!m_unfinished)
        return stems;
    const QHash<QString, QString> written = m_store->destinations(m_unfinished->id);
    for (auto it = written.cbegin(); it != written.cend(); ++it) {
        const QString name = QFileInfo(it.value()).fileName();
        const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
        stems.insert(CardImporter::shotKey(it.key()), dot > 0 ? name.left(dot) : name);
    }
    return stems;
}

bool CardImportJournal::begin(const QString& roll, const QString& samplePicture)
{
    const QDateTime now = QDateTime::currentDateTime();
    platform::RememberedCard card = m_card.value_or(platform::RememberedCard{});
    card.key = m_volume.key();
    card.volumeUuid = m_volume.uuid;
    card.volumeLabel = m_volume.label;
    if (!samplePicture.isEmpty()) {
        const platform::ImageMetadata camera = platform::ImageMetadata::read(samplePicture);
        card.cameraMake = camera.make;
        card.cameraModel = camera.model;
        card.cameraSerial = camera.serial;
    }
    const auto id = m_store->remember(card);
    if (!id) {
        Log::raw(QStringLiteral("⚠️ 无法记录存储卡: ") + m_store->lastError());
        return false;
    }
    if (m_unfinished && m_unfinished->roll == roll) {
        m_importId = m_unfinished->id;
    } else {
        const auto started = m_store->beginImport(*id, roll, now);
        if (!started) {
            Log::raw(QStringLiteral("⚠️ 无法记录导入: ") + m_store->lastError());
            return false;
        }
        m_importId = *started;
    }
    m_card = m_store->card(card.key);
    return m_card.has_value();
}

void CardImportJournal::fileCopied(const QString& source, const CardFileStamp& stamp,
                                   const QString& destination)
{
    if (!m_card || m_importId == 0)
        return;
    platform::CardFileIdentity file{pathOnCard(source), stamp.size, stamp.modifiedMs, {}};
    if (CardScanner::kindOf(source) != MediaKind::video)
        file.captureTime = platform::ImageMetadata::read(destination).captureTime;
    if (!m_store->recordFile(m_importId, m_card->id, file, destination))
        Log::raw(QStringLiteral("⚠️ 无法记录已导入的文件: ") + m_store->lastError() +
                 QStringLiteral(" - ") + source);
}

void CardImportJournal::finish()
{
    if (m_card && m_importId != 0)
        m_store->finishImport(m_importId, m_card->id, QDateTime::currentDateTime());
}

} // namespace lumaro::cards
