// SPDX-License-Identifier: GPL-3.0-or-later
// Everything the pose panel and `lumaro-cli pose` show for one picture: each person's joints and verdicts.
#pragma once

#include "platform/pose/BodyPoseDetector.h"
#include "pose/PersonPoseEstimator.h"
#include "pose/ShotSize.h"
#include "pose/SkeletonRepairer.h"

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
    JointRepairs repairs; // joints put right before the rules saw them
    QRectF box;           // normalised, y upward
    float score = 0.0f;   // how sure the detector is of the person
    std::optional<ShotSize> shotSize;
};

struct PicturePoseAnalysis
{
    QString path;
    QSize pixelSize; // the picture's own size, upright
    std::vector<AnalysedPerson> people;
    std::optional<ShotSize> shotSize;      // the framing of its surest person; nullopt with nobody
    std::optional<QStringList> visionTags; // nullopt: no index entry for the picture
    double decodeMs = 0.0;
    double detectMs = 0.0;       // every network run together
    double wholePictureMs = 0.0; // of which the look at the whole picture
    double tilesMs = 0.0;        // of which the tiles (0: none were needed)
    int passes = 0;              // network runs made
    double rulesMs = 0.0;        // quality filter and pose rules
};

struct PicturePoseFailure
{
    QString message;
};

// Blocking; one analyser per thread (the detector it holds is serialised). Without a pose model every
// call fails with the same clear message and nothing else happens; an unreadable picture fails with the
// reader's reason. The long side analysed is at most kAnalysisSide pixels: the detector's tiles are seen at
// 256 pixels, so more would only cost decoding time.
class PicturePoseAnalyzer
{
public:
    static constexpr int kAnalysisSide = 1024;

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
