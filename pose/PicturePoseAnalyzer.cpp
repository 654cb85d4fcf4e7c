// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/PicturePoseAnalyzer.h"

#include "platform/pose/MultiPoseBodyPoseDetector.h"
#include "platform/vision/AnalysisImage.h"
#include "platform/vision/CenterNetObjectDetector.h"
#include "pose/PersonQualityFilter.h"
#include "pose/PoseVisionTags.h"

#include <QElapsedTimer>

#include <algorithm>

namespace lumaro::pose {

namespace {

// A box in the image's pixels, normalised like the joints (0–1, y upward).
QRectF normalised(const QRectF& box, QSize size)
{
    const double width = size.width();
    const double height = size.height();
    return QRectF(box.x() / width, 1.0 - box.bottom() / height, box.width() / width, box.height() / height);
}

double sinceMs(const QElapsedTimer& timer)
{
    return timer.nsecsElapsed() / 1e6;
}

} // namespace

PicturePoseAnalyzer::PicturePoseAnalyzer()
{
    m_backends.body = platform::MultiPoseBodyPoseDetector::load(&m_modelProblem);
    if (!m_backends.body)
        return;
    m_backends.faces = platform::makeFaceDetector();
    m_backends.objects = platform::CenterNetObjectDetector::installed(kConfirmingObjectScore);
}

PicturePoseAnalyzer::PicturePoseAnalyzer(std::unique_ptr<platform::BodyPoseDetector> detector)
    : PicturePoseAnalyzer(PoseBackends{std::move(detector), nullptr, nullptr})
{
}

PicturePoseAnalyzer::PicturePoseAnalyzer(PoseBackends backends) : m_backends(std::move(backends))
{
    if (!m_backends.body)
        m_modelProblem = QStringLiteral("未安装姿态模型");
}

PicturePoseAnalyzer::~PicturePoseAnalyzer() = default;

std::vector<std::pair<QRectF, float>> PicturePoseAnalyzer::findFaces(const QImage& image,
                                                                     PicturePoseAnalysis& analysis)
{
    std::vector<std::pair<QRectF, float>> faces;
    if (!m_backends.faces)
        return faces;
    QElapsedTimer timer;
    timer.start();
    // Faces are looked for on a smaller copy: the detector's time grows with the pixels, and a face too
    // small to be found there is too small to tell the framing by. A picture the face detector cannot look
    // at still has its people: faces only refine them.
    const QImage copy =
        std::max(image.width(), image.height()) > kFaceSide
            ? image.scaled(kFaceSide, kFaceSide, Qt::KeepAspectRatio, Qt::SmoothTransformation)
            : image;
    const platform::FaceDetection found = m_backends.faces->detect(copy);
    for (const platform::FaceBox& face : found.faces)
        faces.emplace_back(normalised(face.box, copy.size()), face.score);
    analysis.facesMs = sinceMs(timer);
    return faces;
}

std::vector<QRectF> PicturePoseAnalyzer::findObjectPeople(const QImage& image, const QRect& region)
{
    std::vector<QRectF> people;
    const platform::ObjectDetections found =
        m_backends.objects->detect(region == image.rect() ? image : image.copy(region));
    for (const platform::DetectedObject& object : found.objects) {
        if (object.label == QLatin1String("person"))
            people.push_back(normalised(object.box.translated(region.topLeft()), image.size()));
    }
    return people;
}

void PicturePoseAnalyzer::confirmByObjects(const QImage& image,
                                           const std::vector<platform::DetectedPerson>& sightings,
                                           std::vector<std::optional<PersonEvidence>>& evidence,
                                           PicturePoseAnalysis& analysis)
{
    const auto unconfirmed = [&] {
        std::vector<std::size_t> open;
        for (std::size_t i = 0; i < sightings.size(); ++i) {
            if (!evidence[i])
                open.push_back(i);
        }
        return open;
    };
    if (!m_backends.objects || unconfirmed().empty())
        return;
    QElapsedTimer timer;
    timer.start();
    const auto confirmWith = [&](const std::vector<QRectF>& people) {
        for (const std::size_t i : unconfirmed())
            evidence[i] = PersonConfirmation::confirm(sightings[i], {}, people);
    };
    confirmWith(findObjectPeople(image, image.rect()));
    // The object detector sees the whole picture squeezed into 512 pixels, where a walker a tenth of the
    // frame tall is a few pixels wide: a small sighting left unconfirmed is looked at again up close.
    std::vector<QRect> looked;
    for (const std::size_t i : unconfirmed()) {
        const QRectF& box = sightings[i].box;
        if (box.height() >= kCloseLookShare || looked.size() >= kCloseLooks)
            continue;
        const double side =
            std::max(box.height() * image.height(), box.width() * image.width()) * kCloseLookSpan;
        const QPointF centre(box.center().x() * image.width(), (1.0 - box.center().y()) * image.height());
        const QRect region =
            QRectF(centre.x() - side / 2, centre.y() - side / 2, side, side).toAlignedRect() & image.rect();
        if (std::any_of(looked.begin(), looked.end(),
                        [&](const QRect& done) { return done.contains(region.center()); }))
            continue; // seen in an earlier close look, which confirmed it or not
        looked.push_back(region);
        confirmWith(findObjectPeople(image, region));
    }
    analysis.objectsMs = sinceMs(timer);
    analysis.objectLooks = 1 + int(looked.size());
}

std::variant<PicturePoseAnalysis, PicturePoseFailure>
PicturePoseAnalyzer::analyse(const QString& path, const std::optional<std::optional<QStringList>>& visionTags)
{
    if (!m_backends.body)
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
    analysis.decodeMs = sinceMs(timer);

    timer.restart();
    const auto detection = m_backends.body->detect(picture->image);
    if (!detection)
        return PicturePoseFailure{QStringLiteral("姿态检测失败")};
    analysis.detectMs = sinceMs(timer);
    analysis.wholePictureMs = detection->wholePictureMs;
    analysis.tilesMs = detection->tilesMs;
    analysis.passes = detection->passes;

    const PersonQualityFilter filter;
    std::vector<platform::DetectedPerson> sightings;
    std::vector<QualifiedPerson> qualified;
    for (const platform::DetectedPerson& sighting : detection->people) {
        if (auto person = filter.qualify(sighting)) {
            // Confirmed and matched to faces on the joints the rules will see, repaired.
            sightings.push_back(platform::DetectedPerson{person->joints, person->box, person->score});
            qualified.push_back(std::move(*person));
        }
    }
    const auto faces =
        sightings.empty() ? std::vector<std::pair<QRectF, float>>() : findFaces(picture->image, analysis);
    std::vector<QRectF> faceBoxes;
    for (const auto& [box, score] : faces)
        faceBoxes.push_back(box);
    std::vector<std::optional<PersonEvidence>> evidence;
    for (const platform::DetectedPerson& sighting : sightings)
        evidence.push_back(PersonConfirmation::confirm(sighting, faceBoxes, {}));
    confirmByObjects(picture->image, sightings, evidence, analysis);

    timer.restart();
    analysis.visionTags = visionTags ? *visionTags : PoseVisionTags::forPicture(path);
    const PersonPoseEstimator estimator;
    const ShotSizeEstimator framing;
    const std::vector<int> faceOf = FaceFraming::match(sightings, faces);
    std::vector<std::pair<std::optional<ShotSize>, float>> shots;
    for (std::size_t i = 0; i < sightings.size(); ++i) {
        // Without an object detector a weak sighting no face vouches for stands on the pose network alone.
        if (!evidence[i] && m_backends.objects)
            continue;
        const QualifiedPerson& person = qualified[i];
        AnalysedPerson analysed{estimator.evaluate(person.joints, analysis.visionTags),
                                person.repairs,
                                person.box,
                                person.score,
                                framing.classify(person.joints, person.box),
                                evidence[i].value_or(PersonEvidence::sighting),
                                std::nullopt};
        if (faceOf[i] >= 0) {
            const auto& [box, score] = faces[std::size_t(faceOf[i])];
            analysed.face = FaceFraming::describe(box, score);
        }
        shots.emplace_back(analysed.shotSize, analysed.score);
        analysis.people.push_back(std::move(analysed));
    }
    analysis.shotSize = ShotSizeEstimator::forPicture(shots);
    analysis.rulesMs = sinceMs(timer);
    return analysis;
}

} // namespace lumaro::pose
