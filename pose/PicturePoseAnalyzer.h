// SPDX-License-Identifier: GPL-3.0-or-later
// Everything the pose panel and `lumaro-cli pose` show for one picture: each person's joints and verdicts.
#pragma once

#include "platform/BodyPoseDetector.h"
#include "pose/PersonPoseEstimator.h"

#include <QRectF>
#include <QSize>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace lumaro::pose {

struct AnalysedPerson
{
    PersonPose pose;
    QRectF searchRegion; // normalised, y upward
};

struct PicturePoseAnalysis
{
    QString path;
    QSize pixelSize;                      // the picture's own size, upright
    std::vector<AnalysedPerson> people;
    std::optional<QStringList> visionTags; // nullopt: no index entry for the picture
    double decodeMs = 0.0;
    double detectMs = 0.0;       // person search and keypoints together
    double personSearchMs = 0.0; // of which the face detector
    double keypointMs = 0.0;     // of which MoveNet
    double rulesMs = 0.0;
};

struct PicturePoseFailure
{
    QString message;
};

// Blocking; one analyser per thread (the detector it holds is serialised). Without a pose model every
// call fails with the same clear message and nothing else happens; an unreadable picture fails with the
// reader's reason. The long side analysed is at most kAnalysisSide pixels, enough for MoveNet's 192-pixel
// input even for a person a fifth of the picture tall.
class PicturePoseAnalyzer
{
public:
    static constexpr int kAnalysisSide = 1280;

    // Loads the installed models; modelProblem() says why when there is none.
    PicturePoseAnalyzer();
    explicit PicturePoseAnalyzer(std::unique_ptr<platform::BodyPoseDetector> detector);
    ~PicturePoseAnalyzer();

    bool hasModel() const { return bool(m_detector); }
    QString modelProblem() const { return m_modelProblem; }

    // `visionTags` given: used as they are; otherwise read from the picture's folder index.
    std::variant<PicturePoseAnalysis, PicturePoseFailure>
    analyse(const QString& path, const std::optional<std::optional<QStringList>>& visionTags = std::nullopt);

private:
    std::unique_ptr<platform::BodyPoseDetector> m_detector;
    QString m_modelProblem;
};

} // namespace lumaro::pose
