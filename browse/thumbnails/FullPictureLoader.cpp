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
        else
            it = m_images.erase(it);
    }
    publishWanted();
    for (const QString& path : std::as_const(m_wanted)) {
        if (!m_images.contains(path) && !m_running.contains(path) && !m_failed.contains(path))
            start(path);
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
        const QImage image = skipped ? QImage() : decode(path, rotation);
        QMetaObject::invokeMethod(
            self.data(),
            [self, path, epoch, image, skipped] {
                if (self)
                    self->finish(path, epoch, image, skipped);
            },
            Qt::QueuedConnection);
    });
}

void FullPictureLoader::finish(const QString& path, quint64 epoch, const QImage& image, bool skipped)
{
    if (epoch != m_epoch || m_running.value(path, epoch + 1) != epoch)
        return; // cleared since
    m_running.remove(path);
    if (!m_wanted.contains(path))
        return; // no longer wanted: dropped, never shown
    if (skipped) {
        start(path); // wanted again after its decode passed it over
        return;
    }
    if (image.isNull())
        m_failed.insert(path);
    else
        m_images.insert(path, image);
    Q_EMIT ready(path);
}

} // namespace lumaro::browse
