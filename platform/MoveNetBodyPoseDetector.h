// SPDX-License-Identifier: GPL-3.0-or-later
// Body pose with OpenCV DNN and MoveNet Lightning, one person per region opened by a face the face detector found.
#pragma once

#include "platform/BodyPoseDetector.h"
#include "platform/vision/FaceDetector.h"

#include <QString>
#include <QStringList>

#include <memory>
#include <mutex>

namespace lumaro::platform {

// MoveNet sees one person, the most central of its input. With a face detector installed each face found
// opens a region around its person and MoveNet runs on each region; without faces (a back view, no face
// detector) it runs once on the whole picture and keeps the result only when enough joints are sure.
// Thread-safe: calls are serialised, since an OpenCV network is not reentrant. Make one per worker for
// parallel work.
class MoveNetBodyPoseDetector : public BodyPoseDetector
{
public:
    static constexpr const char* kModelFile = "movenet_singlepose_lightning_v4.onnx";

    // Looks for pose/movenet_singlepose_lightning_v4.onnx in AppPaths::modelSearchDirs() and takes the best
    // face detector installed. nullptr when MoveNet is not installed, with `error` naming the file and the
    // folders searched.
    static std::unique_ptr<MoveNetBodyPoseDetector> load(QString* error = nullptr);
    // `faces` may be null: then every picture is searched as one person.
    static std::unique_ptr<MoveNetBodyPoseDetector> loadFrom(const QString& modelPath,
                                                             std::unique_ptr<FaceDetector> faces,
                                                             QString* error = nullptr);

    ~MoveNetBodyPoseDetector() override;

    std::optional<BodyPoseDetection> detect(const QImage& image) override;

    bool hasFaceDetector() const;

private:
    std::optional<BodyPoseDetection> detectPeople(const QImage& image);
    struct Backend;
    explicit MoveNetBodyPoseDetector(std::unique_ptr<Backend> backend);

    std::mutex m_mutex;
    std::unique_ptr<Backend> m_backend;
};

} // namespace lumaro::platform
