// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/thumbnails/FaceCentreFinder.h"

#include "platform/picture/PictureReader.h"
#include "platform/vision/FaceDetector.h"

#include <QPointer>

#include <memory>

namespace lumaro::browse {

namespace {

// The detector lives as long as the finder's thread does; made on first use, on that thread.
std::optional<QPointF> findWithDetector(const QString& path, int rotation)
{
    thread_local std::unique_ptr<platform::FaceDetector> detector = platform::makeFaceDetector();
    if (!detector)
        return std::nullopt;
    // The detector scales down to this anyway; a DCT-scaled decode is many times faster than the full one.
    const QImage image = platform::PictureReader::read({path, 1280, true, rotation}).image;
    if (image.isNull())
        return std::nullopt;
    const platform::FaceDetection found = detector->detect(image);
    const platform::FaceBox* largest = nullptr;
    for (const platform::FaceBox& face : found.faces) {
        if (!largest || face.box.width() * face.box.height() > largest->box.width() * largest->box.height())
            largest = &face;
    }
    if (!largest)
        return std::nullopt;
    const QPointF middle = largest->box.center();
    return QPointF(middle.x() / image.width(), middle.y() / image.height());
}

} // namespace

FaceCentreFinder::FaceCentreFinder(FindFunction find, QObject* parent)
    : QObject(parent), m_find(find ? std::move(find) : FindFunction(findWithDetector))
{
    m_pool.setMaxThreadCount(1);
    m_pool.setExpiryTimeout(-1); // one thread for good, so its detector is loaded once
}

FaceCentreFinder::~FaceCentreFinder()
{
    m_pool.clear();
    m_pool.waitForDone();
}

void FaceCentreFinder::request(const QString& path)
{
    if (path.isEmpty() || m_known.contains(path) || m_running.contains(path))
        return;
    m_pool.clear(); // only the latest picture asked for is worth looking at
    m_running.clear();
    m_running.insert(path, true);
    const int rotation = m_rotation ? m_rotation(path) : 0;
    QPointer<FaceCentreFinder> self(this);
    const FindFunction find = m_find;
    m_pool.start([self, find, path, rotation] {
        const std::optional<QPointF> centre = find(path, rotation);
        QMetaObject::invokeMethod(
            self.data(),
            [self, path, centre] {
                if (!self)
                    return;
                self->m_running.remove(path);
                self->m_known.insert(path, centre);
                Q_EMIT self->found(path);
            },
            Qt::QueuedConnection);
    });
}

std::optional<std::optional<QPointF>> FaceCentreFinder::centre(const QString& path) const
{
    const auto it = m_known.constFind(path);
    if (it == m_known.constEnd())
        return std::nullopt;
    return *it;
}

} // namespace lumaro::browse
