// SPDX-License-Identifier: GPL-3.0-or-later
// Finds where the main face of a picture is, so the 100 % loupe opens on it instead of the middle.
#pragma once

#include <QHash>
#include <QObject>
#include <QPointF>
#include <QString>
#include <QThreadPool>

#include <functional>
#include <optional>

namespace lumaro::browse {

// Main thread; the looking runs on one thread of its own (a face detector is not to be shared between
// threads), value in, point out. The answer for a file is kept: a point (as shares 0–1 of the upright
// picture's width and height) or none when the picture shows no face. The face chosen is the largest.
class FaceCentreFinder : public QObject
{
    Q_OBJECT
public:
    // Called on the finder's thread: the centre of the picture's main face, or nullopt.
    using FindFunction = std::function<std::optional<QPointF>(const QString& path, int rotation)>;
    using RotationFunction = std::function<int(const QString& path)>;

    explicit FaceCentreFinder(FindFunction find = {}, QObject* parent = nullptr);
    ~FaceCentreFinder() override;

    void setRotationFunction(RotationFunction rotation) { m_rotation = std::move(rotation); }
    // Starts looking at `path` unless its answer is known or coming.
    void request(const QString& path);
    // nullopt while unknown; then the face's centre, or a null optional inside when there is no face.
    std::optional<std::optional<QPointF>> centre(const QString& path) const;

Q_SIGNALS:
    void found(const QString& path);

private:
    FindFunction m_find;
    RotationFunction m_rotation;
    QThreadPool m_pool;
    QHash<QString, std::optional<QPointF>> m_known;
    QHash<QString, bool> m_running;
};

} // namespace lumaro::browse
