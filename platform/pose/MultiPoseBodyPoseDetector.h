// SPDX-License-Identifier: GPL-3.0-or-later
// Body pose of every person in a picture from a multi-person keypoint network, with no face needed: the whole
// picture first, then overlapping tiles when people may be too small or too many for one look.
#pragma once

#include "platform/pose/BodyPoseDetector.h"
#include "platform/vision/PersonDetector.h"

#include <QRect>
#include <QSize>
#include <QString>

#include <memory>
#include <vector>

namespace lumaro::platform {

// The network sees the picture fitted into a small square (256 px) and names at most six people per look.
// A person shorter than about a tenth of that square, or a seventh person, is lost; so unless the whole
// picture already shows a large subject among few people, it is searched again in four overlapping tiles,
// each seen at 1.7 times the scale, and the sightings are merged (one person seen twice stays one, the
// sighting with more sure joints kept). Not thread-safe: one instance per worker.
class MultiPoseBodyPoseDetector final : public BodyPoseDetector
{
public:
    static constexpr const char* kModelPath = "pose/movenet_multipose_lightning_256.onnx";

    // The installed network; nullptr with `error` naming the file and the folders searched.
    static std::unique_ptr<MultiPoseBodyPoseDetector> load(QString* error = nullptr);
    static std::unique_ptr<MultiPoseBodyPoseDetector> loadFrom(const QString& modelPath,
                                                               QString* error = nullptr);
    explicit MultiPoseBodyPoseDetector(std::unique_ptr<PersonDetector> people);
    ~MultiPoseBodyPoseDetector() override;

    std::optional<BodyPoseDetection> detect(const QImage& image) override;

    // The tiles a picture of `size` is searched in: a 2 × 2 grid of overlapping rectangles of its shape.
    static std::vector<QRect> tilesOf(QSize size);
    // Whether the whole-picture sightings leave room for people it could not see.
    static bool needsTiles(const std::vector<PersonDetection>& whole, QSize size);

private:
    std::unique_ptr<PersonDetector> m_people;
};

} // namespace lumaro::platform
