// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/PicturePoseAnalyzer.h"

#include "platform/pose/MultiPoseBodyPoseDetector.h"
#include "platform/vision/AnalysisImage.h"
#include "pose/PersonQualityFilter.h"
#include "pose/PoseVisionTags.h"

#include <QElapsedTimer>

namespace lumaro::pose {

PicturePoseAnalyzer::PicturePoseAnalyzer()
{
    m_detector = platform::MultiPoseBodyPoseDetector::load(&m_modelProblem);
}

PicturePoseAnalyzer::PicturePoseAnalyzer(std::unique_ptr<platform::BodyPoseDetector> detector)
    : m_detector(std::move(detector))
{
    if (!m_detector)
        m_modelProblem = QStringLiteral("未安装姿态模型");
}

PicturePoseAnalyzer::~PicturePoseAnalyzer() = default;

std::variant<PicturePoseAnalysis, PicturePoseFailure>
PicturePoseAnalyzer::analyse(const QString& path, const std::optional<std::optional<QStringList>>& visionTags)
{
    if (!m_detector)
        return PicturePoseFailure{m_modelProblem};
    QElapsedTimer timer;
    timer.start();
    QString error;
    const auto picture = platform::AnalysisImageReader::read(path, kAnalysisSide, &error);
    if (!picture)
        return PicturePoseFailure{error.isEmpty() ? QStringLiteral("无法读取图片") : error};
    PicturePoseAnalysis analysis;
    analysis.path = path;
    analysis.pixelSize = picture->pixelSize;
    analysis.decodeMs = timer.nsecsElapsed() / 1e6;

    timer.restart();
    const auto detection = m_detector->detect(picture->image);
    if (!detection)
        return PicturePoseFailure{QStringLiteral("姿态检测失败")};
    analysis.detectMs = timer.nsecsElapsed() / 1e6;
    analysis.wholePictureMs = detection->wholePictureMs;
    analysis.tilesMs = detection->tilesMs;
    analysis.passes = detection->passes;

    timer.restart();
    analysis.visionTags = visionTags ? *visionTags : PoseVisionTags::forPicture(path);
    const PersonQualityFilter filter;
    const PersonPoseEstimator estimator;
    const ShotSizeEstimator framing;
    std::vector<std::pair<std::optional<ShotSize>, float>> shots;
    for (const platform::DetectedPerson& sighting : detection->people) {
        const auto person = filter.qualify(sighting);
        if (!person)
            continue;
        AnalysedPerson analysed{estimator.evaluate(person->joints, analysis.visionTags), person->repairs,
                                person->box, person->score, framing.classify(person->joints, person->box)};
        shots.emplace_back(analysed.shotSize, analysed.score);
        analysis.people.push_back(std::move(analysed));
    }
    analysis.shotSize = ShotSizeEstimator::forPicture(shots);
    analysis.rulesMs = timer.nsecsElapsed() / 1e6;
    return analysis;
}

} // namespace lumaro::pose
