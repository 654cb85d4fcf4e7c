// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/thumbnails/ThumbnailLoader.h"

#include "browse/thumbnails/ThumbnailCache.h"
#include "platform/Log.h"
#include "platform/NotificationCenter.h"
#include "platform/picture/PictureReader.h"

#include <QPointer>

#include <algorithm>

namespace lumaro::browse {

using platform::Log;

namespace {

QString jobKey(const QString& path, PictureKind kind)
{
    return (kind == PictureKind::preview ? QStringLiteral("P:") : QStringLiteral("T:")) + path;
}

QString pathOfKey(const QString& key)
{
    return key.mid(2);
}

QImage readPicture(const QString& path, int maxSide, bool thumbnail, int rotation)
{
    platform::PictureRequest request{path, maxSide, thumbnail, rotation};
    const platform::DecodedPicture picture = platform::PictureReader::read(request);
    if (picture.isNull())
        Log::line(QStringLiteral("ThumbnailLoader"), QStringLiteral("❌ 无法解码: ") + path + QStringLiteral(" (")
                                                          + picture.error + QLatin1Char(')'));
    else if (picture.isPartial())
        Log::line(QStringLiteral("ThumbnailLoader"), QStringLiteral("⚠️ 文件不完整，只显示能读出的部分: ") + path
                                                          + QStringLiteral(" (") + picture.error + QLatin1Char(')'));
    return picture.image;
}

} // namespace

ThumbnailLoader::ThumbnailLoader(ThumbnailCache& cache, DecodeFunction decode, Options options, QObject* parent)
    : QObject(parent)
    , m_cache(cache)
    , m_decode(decode ? std::move(decode) : DecodeFunction(readPicture))
    , m_options(options)
{
    m_pool.setMaxThreadCount(std::max(1, m_options.threads));
    if (!m_options.listenForReloads)
        return;
    connect(&platform::NotificationCenter::shared(), &platform::NotificationCenter::posted, this,
            [this](const QString& name, const QVariantMap& userInfo) {
                if (name != platform::notifications::thumbnailNeedsReload)
                    return;
                const QString path = userInfo.value(QStringLiteral("filePath")).toString();
                Log::line(QStringLiteral("ThumbnailLoader"), QStringLiteral("收到重载通知: ") + path);
                invalidate(path);
            });
}

ThumbnailLoader::~ThumbnailLoader()
{
    m_pool.clear();
    m_pool.waitForDone();
}

void ThumbnailLoader::setFolder(const QString& folder)
{
    if (folder == m_folder)
        return;
    m_folder = folder;
    ++m_generation;
    m_queue.clear();
    m_running.clear(); // their results carry the old generation and are dropped
    m_previews.clear();
    m_previewOrder.clear();
    m_failed.clear();
    m_stamps.clear();
}

std::optional<QImage> ThumbnailLoader::thumbnail(const QString& path) const
{
    return m_cache.image(path);
}

std::optional<QImage> ThumbnailLoader::preview(const QString& path) const
{
    const auto it = m_previews.constFind(path);
    if (it == m_previews.constEnd())
        return std::nullopt;
    return *it;
}

bool ThumbnailLoader::hasFailed(const QString& path, PictureKind kind) const
{
    return m_failed.contains(jobKey(path, kind));
}

void ThumbnailLoader::requestThumbnails(const QStringList& visible, const QStringList& prefetch)
{
    dropQueued(PictureKind::thumbnail);
    for (const QString& path : visible)
        enqueue(path, PictureKind::thumbnail, ThumbnailPriority::visible);
    const qsizetype room = std::max<qsizetype>(0, ThumbnailCache::maxCacheSize - visible.size());
    for (const QString& path : prefetch.mid(0, room))
        enqueue(path, PictureKind::thumbnail, ThumbnailPriority::prefetch);
    scheduleDispatch();
}

void ThumbnailLoader::requestPreview(const QString& current, const QStringList& neighbours)
{
    dropQueued(PictureKind::preview);
    if (!current.isEmpty())
        enqueue(current, PictureKind::preview, ThumbnailPriority::current);
    for (const QString& path : neighbours)
        enqueue(path, PictureKind::preview, ThumbnailPriority::prefetch);
    scheduleDispatch();
}

void ThumbnailLoader::invalidate(const QString& path)
{
    ++m_epochs[path];
    m_running.remove(jobKey(path, PictureKind::thumbnail));
    m_running.remove(jobKey(path, PictureKind::preview));
    m_failed.remove(jobKey(path, PictureKind::thumbnail));
    m_failed.remove(jobKey(path, PictureKind::preview));
    m_stamps.remove(jobKey(path, PictureKind::thumbnail));
    m_stamps.remove(jobKey(path, PictureKind::preview));
    m_previews.remove(path);
    m_previewOrder.removeAll(path);
    Q_EMIT invalidated(path);
}

void ThumbnailLoader::refresh()
{
    QSet<QString> stale;
    for (const QString& key : std::as_const(m_failed))
        stale.insert(pathOfKey(key));
    for (auto it = m_stamps.begin(); it != m_stamps.end();) {
        const QString path = pathOfKey(it.key());
        const bool held = it.key() == jobKey(path, PictureKind::preview) ? m_previews.contains(path)
                                                                         : m_cache.contains(path);
        if (!held) {
            it = m_stamps.erase(it);
            continue;
        }
        if (!platform::FileStamp::sameContent(*it, platform::FileStamp::of(path)))
            stale.insert(path);
        ++it;
    }
    for (const QString& path : std::as_const(stale)) {
        Log::line(QStringLiteral("ThumbnailLoader"), QStringLiteral("重新读取: ") + path);
        m_cache.clearFile(path);
        invalidate(path);
    }
}

bool ThumbnailLoader::isDone(const QString& path, PictureKind kind) const
{
    const QString key = jobKey(path, kind);
    if (m_failed.contains(key) || m_running.contains(key))
        return true;
    return kind == PictureKind::preview ? m_previews.contains(path) : m_cache.contains(path);
}

void ThumbnailLoader::enqueue(const QString& path, PictureKind kind, ThumbnailPriority priority)
{
    if (path.isEmpty() || isDone(path, kind))
        return;
    m_queue.append(Job{path, kind, priority, m_order++});
}

void ThumbnailLoader::dropQueued(PictureKind kind)
{
    m_queue.removeIf([kind](const Job& job) { return job.kind == kind; });
}

void ThumbnailLoader::scheduleDispatch()
{
    // Dispatch on the next turn of the event loop, so every request made in this turn is queued and ranked first.
    if (m_dispatchScheduled)
        return;
    m_dispatchScheduled = true;
    QMetaObject::invokeMethod(this, &ThumbnailLoader::dispatch, Qt::QueuedConnection);
}

void ThumbnailLoader::dispatch()
{
    m_dispatchScheduled = false;
    while (m_running.size() < m_pool.maxThreadCount() && !m_queue.isEmpty()) {
        const auto best = std::min_element(m_queue.cbegin(), m_queue.cend(), [](const Job& a, const Job& b) {
            return a.priority != b.priority ? a.priority < b.priority : a.order < b.order;
        });
        const Job job = *best;
        m_queue.erase(best);
        if (!isDone(job.path, job.kind))
            start(job);
    }
}

void ThumbnailLoader::start(const Job& job)
{
    const bool isThumbnail = job.kind == PictureKind::thumbnail;
    const int side = isThumbnail ? m_options.thumbnailSide : m_options.previewSide;
    const int rotation = m_rotation ? m_rotation(job.path) : 0;
    const quint64 generation = m_generation;
    const quint64 epoch = m_epochs.value(job.path);
    m_running.insert(jobKey(job.path, job.kind), epoch);
    QPointer<ThumbnailLoader> self(this);
    const DecodeFunction decode = m_decode;
    const QString path = job.path;
    const PictureKind kind = job.kind;
    m_pool.start([self, decode, path, kind, side, isThumbnail, rotation, generation, epoch] {
        // Stamped before the read: a file still growing is seen as changed by the next refresh.
        const auto stamp = platform::FileStamp::of(path);
        const QImage image = decode(path, side, isThumbnail, rotation);
        QMetaObject::invokeMethod(
            self.data(),
            [self, path, kind, generation, epoch, image, stamp] {
                if (self)
                    self->finish(path, kind, generation, epoch, image, stamp);
            },
            Qt::QueuedConnection);
    });
}

void ThumbnailLoader::finish(const QString& path, PictureKind kind, quint64 generation, quint64 epoch,
                             const QImage& image, const std::optional<platform::FileStamp>& stamp)
{
    const QString key = jobKey(path, kind);
    const bool current = generation == m_generation && epoch == m_epochs.value(path);
    if (current)
        m_running.remove(key);
    scheduleDispatch();
    if (!current)
        return; // a folder that was left, or pixels that changed meanwhile
    m_stamps.insert(key, stamp);
    if (image.isNull())
        m_failed.insert(key);
    else if (kind == PictureKind::thumbnail)
        m_cache.setImage(image, path);
    else
        keepPreview(path, image);
    if (kind == PictureKind::thumbnail)
        Q_EMIT thumbnailReady(path, image);
    else
        Q_EMIT previewReady(path);
}

void ThumbnailLoader::keepPreview(const QString& path, const QImage& image)
{
    m_previewOrder.removeAll(path);
    m_previewOrder.append(path);
    m_previews.insert(path, image);
    while (m_previewOrder.size() > std::max(1, m_options.keptPreviews))
        m_previews.remove(m_previewOrder.takeFirst());
}

} // namespace lumaro::browse
