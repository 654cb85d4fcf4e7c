// SPDX-License-Identifier: GPL-3.0-or-later
// Works out the folder cards of a folder's children, reusing what the cache knows of folders that did not
// change.
#pragma once

#include "browse/folders/FolderCard.h"

#include <QByteArray>
#include <QHash>
#include <QList>

#include <functional>

namespace lumaro::platform {
class FileTagStore;
}

namespace lumaro::browse {

// A folder's cards as last worked out, each with the signature of the folder it was made from, kept in one
// JSON file per parent under the application's cache folder ("folder-cards/<hash>.json", written through a
// temporary file). A cache file that cannot be read is treated as empty and replaced.
struct FolderCardCacheEntry
{
    QByteArray signature;
    FolderCard card;
};

// Blocking; call it off the main thread. Any number may run at once (on different parents).
class FolderCardScanner
{
public:
    explicit FolderCardScanner(platform::FileTagStore* tags = nullptr, QString cacheFolder = {});

    // The cards of `subfolders` (children of `parent`), in their order. A folder whose pictures have the same
    // names, sizes and times as when cached is taken from the cache without opening a picture; the others are
    // read (EXIF capture time, colour tags), at most `jobs` folders at once. `batch` gets the cards in runs
    // of consecutive folders as they are ready (cached ones first, in one run), and may stop the scan by
    // returning false. The cache file is rewritten when anything changed.
    QList<FolderCard> scan(const QString& parent, const QStringList& subfolders,
                           const std::function<bool(const QList<FolderCard>&)>& batch = {}, int jobs = 2);

    // The file that holds `parent`'s cards.
    QString cacheFile(const QString& parent) const;
    // One folder's card, read from its pictures.
    FolderCard read(const QString& folder, const QStringList& names) const;

private:
    QHash<QString, FolderCardCacheEntry> load(const QString& parent) const;
    void save(const QString& parent, const QHash<QString, FolderCardCacheEntry>& entries) const;

    platform::FileTagStore& m_tags;
    QString m_cacheFolder;
};

} // namespace lumaro::browse
