// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes thumbnails and previews for the views off the main thread, most urgent first.
#pragma once

#include "browse/thumbnails/ThumbnailPriority.h"
#include "platform/files/FileStamp.h"

#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QThreadPool>

#include <functional>
#include <optional>

namespace lumaro::browse {

class ThumbnailCache;

struct ThumbnailLoaderOptions
{
    int thumbnailSide = 256;
    int previewSide = 1600;
    int threads = 2;       // decodes at once
    int keptPreviews = 6;  // previews kept around the selection
    bool listenForReloads = true;
};

// Main thread only; the decoding runs on its own pool. The queue lives here, on the main thread, and a pool
// thread gets only values (path, size, rotation) and hands back an image, so nothing of this object is touched
// off the main thread.
//
// Policies: a request carries a priority (current > visible > prefetch) and the queue serves the most urgent,
// oldest first. requestThumbnails() and requestPreview() each replace what is queued of their kind (work for a
// picture that scrolled away or a selection that moved on is dropped, never decoded late). setFolder() starts a
// new generation: queued work of the folder that was left is dropped and results still running for it are
// thrown away when they arrive. A "ThumbnailNeedsReload" notification for a file drops its preview and any
// decode in flight, and invalidated() tells the views to ask again.
//
// Thumbnails land in ThumbnailCache (keyed by full path), and go to the views with thumbnailReady(); the few
// previews around the selection are kept here.
class ThumbnailLoader : public QObject
{
    Q_OBJECT
public:
    // Value in, image out; called on pool threads, so it must not touch shared state. A null image means the
    // file could not be decoded (the views show a placeholder).
    using DecodeFunction = std::function<QImage(const QString& path, int maxSide, bool thumbnail, int rotation)>;
    // The display rotation (clockwise degrees) of a picture; asked on the main thread when a job starts.
    using RotationFunction = std::function<int(const QString& path)>;

    using Options = ThumbnailLoaderOptions;

    explicit ThumbnailLoader(ThumbnailCache& cache, DecodeFunction decode = {}, Options options = {},
                             QObject* parent = nullptr);
    ~ThumbnailLoader() override;

    void setRotationFunction(RotationFunction rotation) { m_rotation = std::move(rotation); }
    const Options& options() const { return m_options; }

    // The folder whose pictures are asked for now; a different one drops queued work and late results.
    void setFolder(const QString& folder);
    quint64 generation() const { return m_generation; }

    std::optional<QImage> thumbnail(const QString& path) const;
    std::optional<QImage> preview(const QString& path) const;
    bool hasFailed(const QString& path, PictureKind kind) const;

    // Replaces the queued thumbnail work: `visible` first, then `prefetch`. Cached ones are skipped, and prefetch
    // stops where the cache could no longer hold it beside the visible ones (it would evict what it just made).
    void requestThumbnails(const QStringList& visible, const QStringList& prefetch = {});
    // Replaces the queued preview work: `current` before anything else, then its neighbours.
    void requestPreview(const QString& current, const QStringList& neighbours = {});
    // Forgets the decoded images of a file (its pixels changed) and cancels their decodes in flight.
    void invalidate(const QString& path);
    // The user asked to read the folder again: every file that failed is tried again (it may have been still
    // on its way from a card or a camera), and so is every file whose size or modification time moved since
    // its images were decoded (a partial picture decoded mid-copy). Stats only the files whose images are
    // held.
    void refresh();

    int queuedCount() const { return int(m_queue.size()); }
    int runningCount() const { return int(m_running.size()); }

Q_SIGNALS:
    // The image is handed along: a view keeps it for as long as the tile is on screen, whatever the cache evicts.
    void thumbnailReady(const QString& path, const QImage& image);
    void previewReady(const QString& path);
    void invalidated(const QString& path);

private:
    struct Job
    {
        QString path;
        PictureKind kind;
        ThumbnailPriority priority;
        quint64 order;
    };
    void enqueue(const QString& path, PictureKind kind, ThumbnailPriority priority);
    void dropQueued(PictureKind kind);
    void scheduleDispatch();
    void dispatch();
    void start(const Job& job);
    void finish(const QString& path, PictureKind kind, quint64 generation, quint64 epoch, const QImage& image,
                const std::optional<platform::FileStamp>& stamp);
    void keepPreview(const QString& path, const QImage& image);
    bool isDone(const QString& path, PictureKind kind) const;

    ThumbnailCache& m_cache;
    DecodeFunction m_decode;
    RotationFunction m_rotation;
    Options m_options;
    QThreadPool m_pool;
    QString m_folder;
    quint64 m_generation = 0;
    quint64 m_order = 0;
    bool m_dispatchScheduled = false;
    QList<Job> m_queue;
    QHash<QString, quint64> m_running;   // job key → epoch it was started with
    QHash<QString, quint64> m_epochs;    // path → how many times it was invalidated
    QHash<QString, QImage> m_previews;
    QStringList m_previewOrder;          // oldest first
    QSet<QString> m_failed;              // job keys that decoded to nothing
    QHash<QString, std::optional<platform::FileStamp>> m_stamps; // job key → the file as its decode found it
};

} // namespace lumaro::browse
