// SPDX-License-Identifier: GPL-3.0-or-later
// Everything the pose panel and `lumaro-cli pose` show for one picture: each person's joints and verdicts.
#pragma once

#include "platform/pose/BodyPoseDetector.h"
#include "platform/vision/FaceDetector.h"
#include "platform/vision/ObjectDetector.h"
#include "pose/FaceFraming.h"
#include "pose/PersonConfirmation.h"
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
    PersonEvidence evidence = PersonEvidence::sighting; // what made a weak sighting count
    std::optional<FaceFacts> face;                      // nullopt: no face seen on this person
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
    double facesMs = 0.0;        // the face detector (0: nobody to look at)
    double objectsMs = 0.0;      // the object detector (0: no weak sighting needed it)
    int objectLooks = 0;         // its runs: the whole picture, then close looks at small sightings
    double rulesMs = 0.0;        // quality filter and pose rules
};

struct PicturePoseFailure
{
    QString message;
};

// What the analyser looks with. Only the body-pose detector is needed: faces refine the people it finds (and
// confirm weak sightings), the object detector confirms weak sightings no face confirms. Without it they
// stand on the pose network alone.
struct PoseBackends
{
    std::unique_ptr<platform::BodyPoseDetector> body;
    std::unique_ptr<platform::FaceDetector> faces;
    std::unique_ptr<platform::ObjectDetector> objects;
};

// Blocking; one analyser per thread (the detector it holds is serialised). Without a pose model every
// call fails with the same clear message and nothing else happens; an unreadable picture fails with the
// reader's reason. The long side analysed is at most kAnalysisSide pixels: the detector's tiles are seen at
// 256 pixels, so more would only cost decoding time.
class PicturePoseAnalyzer
{
public:
    static constexpr int kAnalysisSide = 1024;
    // The object detector's person score that may confirm a weak sighting. Alone the detector needs 0.45 to
    // name a thing; here the pose network has already seen a body in the same place.
    static constexpr float kConfirmingObjectScore = 0.3f;
    // The long side faces are looked for at.
    static constexpr int kFaceSide = 640;
    // A weak sighting shorter than this share of the picture gets a close look of the object detector, at
    // most kCloseLooks of them per picture (each costs as much as the whole look).
    static constexpr double kCloseLookShare = 0.25;
    static constexpr std::size_t kCloseLooks = 4;
    // A close look spans this many times the sighting's height, so one look also takes in its neighbours.
    static constexpr double kCloseLookSpan = 5.0;

    // Loads the installed models; modelProblem() says why when there is none.
    PicturePoseAnalyzer();
    explicit PicturePoseAnalyzer(std::unique_ptr<platform::BodyPoseDetector> detector);
    explicit PicturePoseAnalyzer(PoseBackends backends);
    ~PicturePoseAnalyzer();

    bool hasModel() const { return bool(m_backends.body); }
    QString modelProblem() const { return m_modelProblem; }

    // `visionTags` given: used as they are; otherwise read from the picture's folder index.
    std::variant<PicturePoseAnalysis, PicturePoseFailure>
    analyse(const QString& path, const std::optional<std::optional<QStringList>>& visionTags = std::nullopt);

private:
    std::vector<std::pair<QRectF, float>> findFaces(const QImage& image, PicturePoseAnalysis& analysis);
    // The object detector's people in `region` of the image, normalised to the whole image.
    std::vector<QRectF> findObjectPeople(const QImage& image, const QRect& region);
    // Gives each weak sighting no face vouched for the object detector's word: from the whole picture, then,
    // for a small one still unconfirmed, from a close look around it.
    void confirmByObjects(const QImage& image, const std::vector<platform::DetectedPerson>& sightings,
                          std::vector<std::optional<PersonEvidence>>& evidence,
                          PicturePoseAnalysis& analysis);

    PoseBackends m_backends;
    QString m_modelProblem;
};

} // namespace lumaro::pose
