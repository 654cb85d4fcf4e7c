// SPDX-License-Identifier: GPL-3.0-or-later
// Which files of a folder are pictures, in what order; a folder's child folders; folder tokens.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace lumaro::browse {

// Stateless apart from logging; safe to call from any thread. Listing blocks, so the views call it off the
// main thread (FolderLoader does).
class FileSystemService
{
public:
    static FileSystemService& shared();

    // The eleven extensions browsing shows, matched on the lower-cased suffix.
    static const QStringList& pictureExtensions();
    static bool isPictureName(const QString& fileName);

    // Full paths of the pictures directly in the folder, hidden entries skipped, sorted by file name in plain
    // code-point order (B.jpg before a.jpg, IMG_10 before IMG_9). An unreadable folder gives an empty list.
    QStringList loadImageFiles(const QString& folder) const;
    // The same list as file names (last path components), which is what the browsing state holds.
    QStringList loadImageFileNames(const QString& folder) const;
    // The same, with the folder named by a token; falls back to `fallbackPath` when the token won't resolve.
    QStringList loadImageFiles(const QByteArray& folderToken, const QString& fallbackPath) const;
    // Full paths of the visible child folders, in the same order.
    QStringList subfolders(const QString& parent) const;
    // Every visible folder below `base`, depth-first, each folder before its children (deep mode's walk).
    QStringList recursiveSubfolders(const QString& base) const;
    // A stored path made absolute: "~/x" and relative paths are taken from the home folder.
    QString resolvePath(const QString& storedPath) const;
    std::optional<QByteArray> createBookmarkData(const QString& folder) const;
};

} // namespace lumaro::browse
