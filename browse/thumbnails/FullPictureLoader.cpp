// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/thumbnails/FullPictureLoader.h"

#include "platform/picture/PictureReader.h"

#include <QPointer>

namespace lumaro::browse {

namespace {

QImage readFull(const QString& path, int rotation)
{
    platform::PictureRequest request{path, 0, false, rotation};
    return platform::PictureReader::read(request).image;
}

} // namespace

FullPictureLoader::FullPictureLoader(DecodeFunction decode, QObject* parent)
    : QObject(parent), m_decode(decode ? std::move(decode) : DecodeFunction(readFull))
{
    m_pool.setMaxThreadCount(2);
}

FullPictureLoader::~FullPictureLoader()
{
    m_pool.clear();
    m_pool.waitForDone();
}

void FullPictureLoader::request(const QString& current, const QStringList& ahead)
{
    m_wanted = QStringList{current} + ahead;
    m_wanted.removeAll(QString());
    for (auto it = m_images.begin(); it != m_images.end();) {
        if (m_wanted.contains(it.key()))
            ++it;
        else {
            m_stamps.remove(it.key());
            it = m_images.erase(it);
        }
    }
    publishWanted();
    startWanted();
}

void FullPictureLoader::startWanted()
{
    // The picture on screen alone first: on two cores a decode ahead beside it would take most of a core
    // and memory bandwidth from it. The ones ahead start once it is in.
    for (const QString& path : std::as_const(m_wanted)) {
        if (m_images.contains(path) || m_failed.contains(path))
            continue;
        if (!m_running.contains(path))
            start(path);
        if (path == m_wanted.constFirst())
            return;
    }
}

void FullPictureLoader::publishWanted()
{
    std::lock_guard lock(m_shared->mutex);
    m_shared->paths = QSet<QString>(m_wanted.cbegin(), m_wanted.cend());
}

void FullPictureLoader::clear()
{
    ++m_epoch;
    m_wanted.clear();
    publishWanted();
    m_images.clear();
    m_running.clear();
    m_failed.clear();
    m_stamps.clear();
}

void FullPictureLoader::refresh()
{
    m_failed.clear();
    for (auto it = m_images.begin(); it != m_images.end();) {
        if (platform::FileStamp::sameContent(m_stamps.value(it.key()), platform::FileStamp::of(it.key()))) {
            ++it;
        } else {
            m_stamps.remove(it.key());
            it = m_images.erase(it);
        }
    }
}

std::optional<QImage> FullPictureLoader::image(const QString& path) const
{
    const auto it = m_images.constFind(path);
    if (it == m_images.constEnd())
        return std::nullopt;
    return *it;
}

void FullPictureLoader::start(const QString& path)
{
    const quint64 epoch = m_epoch;
    m_running.insert(path, epoch);
    const int rotation = m_rotation ? m_rotation(path) : 0;
    QPointer<FullPictureLoader> self(this);
    const DecodeFunction decode = m_decode;
    const std::shared_ptr<Wanted> wanted = m_shared;
    m_pool.start([self, decode, wanted, path, rotation, epoch] {
        bool skipped = false;
        {
            std::lock_guard lock(wanted->mutex);
            skipped = !wanted->paths.contains(path);
        }
        // Stamped before the read: a file still growing is seen as changed by the next refresh.
        const auto stamp = skipped ? std::nullopt : platform::FileStamp::of(path);
        const QImage image = skipped ? QImage() : decode(path, rotation);
        QMetaObject::invokeMethod(
            self.data(),
            [self, path, epoch, image, skipped, stamp] {
                if (self)
                    self->finish(path, epoch, image, skipped, stamp);
            },
            Qt::QueuedConnection);
    });
}

void FullPictureLoader::finish(const QString& path, quint64 epoch, const QImage& image, bool skipped,
                               const std::optional<platform::FileStamp>& stamp)
{
    if (epoch != m_epoch || m_running.value(path, epoch + 1) != epoch)
        return; // cleared since
    m_running.remove(path);
    if (!m_wanted.contains(path))
        return; // no longer wanted: dropped, never shown
    if (skipped) {
        startWanted(); // wanted again after its decode passed it over
        return;
    }
    if (image.isNull())
        m_failed.insert(path);
    else {
        m_images.insert(path, image);
        m_stamps.insert(path, stamp);
    }
    Q_EMIT ready(path);
    startWanted();
}

} // namespace lumaro::browse
