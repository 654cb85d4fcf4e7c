// SPDX-License-Identifier: GPL-3.0-or-later
// The local copy of a roll, as it goes online: web-sized previews, thumbnails, originals when asked, and the
// album page. It lives in the app's cache and is kept up to date picture by picture, so publishing again only
// re-makes (and rclone only re-sends) what changed in the folder.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>

namespace lumaro::rolls {

struct StageOptions
{
    bool originals = false;    // also publish the original files
    bool keepLocation = false; // leave the GPS tags in published copies
    QString title;             // the album page's heading
};

struct StagedPicture
{
    QString sourceName; // the file's name in the folder
    QString base;       // its published name without folder and suffix, stable across publishes
    QString original;   // the original's published name under "o/", when originals are published
    QString caption;    // the name without its suffix
    QStringList tags;   // colour tags and any other tag names
};

struct StageResult
{
    QString uploadFolder;          // what goes online, as it should be there
    QList<StagedPicture> pictures; // in browsing order
    QStringList failures;          // "name: reason" for pictures that could not be prepared
    QHash<QString, qint64>
        files;            // every file of the upload folder by its path inside the roll, with its size
    qint64 bytes() const; // everything in the upload folder
    bool cancelled = false;
};

class RollStage
{
public:
    static constexpr int kPreviewSide = 2048;
    static constexpr int kThumbnailSide = 480;

    // `key` tells apart the stages of one folder published to different places.
    RollStage(QString folder, const QString& key, StageOptions options);

    // Brings the upload folder up to date with the folder's pictures (decoding on the pool). `progress` gets
    // (done, total) pictures from the calling thread's point of view. Blocking.
    StageResult update(const std::function<void(qsizetype, qsizetype)>& progress = {},
                       const std::atomic_bool* cancel = nullptr) const;

    QString stageFolder() const { return m_stageFolder; }
    // The published name of the picture `sourceName` at `source`: safe on every store and URL, the same on
    // every publish while the picture and the options stay the same.
    QString publishedBase(const QString& sourceName, const QString& source) const;

private:
    QString m_folder;
    QString m_stageFolder;
    StageOptions m_options;
};

} // namespace lumaro::rolls
