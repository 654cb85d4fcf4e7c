// SPDX-License-Identifier: GPL-3.0-or-later
// One card's memory across imports: which of its files came in before, and an import a crash or kill cut
// short.
#pragma once

#include "cards/NewFileInfo.h"
#include "platform/volumes/RememberedCardStore.h"
#include "platform/volumes/VolumeIdentity.h"

#include <QHash>
#include <QString>

#include <memory>
#include <optional>

namespace lumaro::cards {

// A card is known by its volume's UUID and label (VolumeIdentity), a file on it by its path on the card, size
// and modification time, so a camera that reuses IMG_0001.JPG after its counter wraps still brings the new
// picture in. Each copied file is recorded as soon as it is in place: an import that dies half-way is found
// again and resumed into its own roll, without copying what it had already copied. One thread at a time.
class CardImportJournal
{
public:
    // Opens the store (cards.db in the app's data folder, or `storePath`) and looks the card up. nullptr with
    // `error` set when the store cannot be opened (damaged, unwritable): the caller imports without memory.
    static std::unique_ptr<CardImportJournal> open(const QString& mountPath, QString* error = nullptr,
                                                   const QString& storePath = {});

    const platform::VolumeIdentity& volume() const { return m_volume; }
    std::optional<platform::RememberedCard> rememberedCard() const { return m_card; }

    // `files` without the ones imported from this card before; alreadyImportedCount says how many were left
    // out.
    NewFileInfo withoutImported(const NewFileInfo& files) const;

    // The roll folder of an interrupted import of this card, when that folder is still there; else empty.
    QString unfinishedRoll() const;
    // "Import everything again": the next import opens a roll of its own even when one was cut short.
    void forgetUnfinished() { m_unfinished.reset(); }
    // The stem each shot of the interrupted import was given, by shot key (see CardImporter::shotKey).
    QHash<QString, QString> unfinishedStems() const;

    // Remembers the card (with the camera read from `samplePicture`'s EXIF) and starts an import into `roll`,
    // or takes up the interrupted one when `roll` is its roll.
    bool begin(const QString& roll, const QString& samplePicture);
    void fileCopied(const QString& source, const CardFileStamp& stamp, const QString& destination);
    void finish();

    // `source` relative to the card's root, '/'-separated.
    QString pathOnCard(const QString& source) const;

private:
    CardImportJournal() = default;

    std::unique_ptr<platform::RememberedCardStore> m_store;
    platform::VolumeIdentity m_volume;
    QString m_scanRoot;
    std::optional<platform::RememberedCard> m_card;
    std::optional<platform::UnfinishedImport> m_unfinished;
    qint64 m_importId = 0;
};

} // namespace lumaro::cards
