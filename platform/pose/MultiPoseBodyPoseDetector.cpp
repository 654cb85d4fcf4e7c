// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pose/MultiPoseBodyPoseDetector.h"

#include "platform/AppPaths.h"
#include "platform/Log.h"
#include "platform/vision/ModelFiles.h"
#include "platform/vision/MoveNetMultiPoseDetector.h"

#include <QElapsedTimer>

#include <algorithm>
#include <array>
#include <cmath>

namespace lumaro::platform {

namespace {

// The network's joints in its own (COCO) order, as keys of the joint dictionary; left and right are the
// subject's own.
constexpr std::array<const char*, kBodyKeypointCount> kJointKeys{
    "nose",           "left_eye",     "right_eye",     "left_ear",  "right_ear",  "left_shoulder",
    "right_shoulder", "left_forearm", "right_forearm", "left_hand", "right_hand", "left_upLeg",
    "right_upLeg",    "left_leg",     "right_leg",     "left_foot", "right_foot"};

// The network's people are kept down to this instance score here; whether a sighting is sure enough to judge
// is decided above, where the joints are looked at too.
constexpr float kMinInstanceScore = 0.15f;
// A joint this sure is one the merge of two sightings may compare.
constexpr float kSureJoint = 0.3f;
// Six is the most the network names in one look: a full look may hide a seventh person.
constexpr std::size_t kPeoplePerLook = 6;
// A person at least this part of the picture's height (or width, lying down) is a subject the whole look saw
// well; with such a subject the picture is not searched again for small people around it.
constexpr double kSubjectShare = 1.0 / 3.0;
// Each tile covers this part of each side, so neighbouring tiles overlap by a fifth of the picture: a person
// up to that size lies whole in some tile.
constexpr double kTileShare = 0.6;

double area(const QRectF& box)
{
    return std::max(0.0, box.width()) * std::max(0.0, box.height());
}

int sureJoints(const PersonDetection& person)
{
    return int(std::count_if(person.keypoints.begin(), person.keypoints.end(),
                             [](const BodyKeypoint& joint) { return joint.score >= kSureJoint; }));
}

// Mean distance of the joints both sightings are sure of, in units of the smaller box's height; -1 when
// they share none.
double sharedJointDistance(const PersonDetection& one, const PersonDetection& other)
{
    double total = 0.0;
    int shared = 0;
    for (int k = 0; k < kBodyKeypointCount; ++k) {
        const BodyKeypoint& a = one.keypoints[std::size_t(k)];
        const BodyKeypoint& b = other.keypoints[std::size_t(k)];
        if (a.score < kSureJoint || b.score < kSureJoint)
            continue;
        total += std::hypot(a.position.x() - b.position.x(), a.position.y() - b.position.y());
        ++shared;
    }
    const double height = std::max(1.0, std::min(one.box.height(), other.box.height()));
    return shared == 0 ? -1.0 : total / shared / height;
}

// Two sightings of one person: the whole look and a tile, or two overlapping tiles. A tile may cut a person,
// so a sighting lying mostly inside another counts as the same when their joints agree; two people standing
// one behind the other overlap as much but their joints do not.
bool isSamePerson(const PersonDetection& one, const PersonDetection& other)
{
    const double common = area(one.box.intersected(other.box));
    const double smaller = std::min(area(one.box), area(other.box));
    if (smaller <= 0.0 || common <= 0.0)
        return false;
    const double united = area(one.box) + area(other.box) - common;
    const double distance = sharedJointDistance(one, other);
    if (common / united >= 0.5 && (distance < 0.0 || distance < 0.25))
        return true;
    return common / smaller >= 0.7 && distance >= 0.0 && distance < 0.15;
}

bool isBetterSighting(const PersonDetection& candidate, const PersonDetection& known)
{
    const int candidateJoints = sureJoints(candidate);
    const int knownJoints = sureJoints(known);
    return candidateJoints != knownJoints ? candidateJoints > knownJoints : candidate.score > known.score;
}

void addSighting(std::vector<PersonDetection>& people, const PersonDetection& sighting)
{
    for (PersonDetection& known : people) {
        if (!isSamePerson(known, sighting))
            continue;
        if (isBetterSighting(sighting, known))
            known = sighting;
        return;
    }
    people.push_back(sighting);
}

PersonDetection shifted(PersonDetection person, QPointF by)
{
    person.box.translate(by);
    for (BodyKeypoint& joint : person.keypoints)
        joint.position += by;
    return person;
}

DetectedPerson asDetectedPerson(const PersonDetection& person, QSize size)
{
    const double width = size.width();
    const double height = size.height();
    DetectedPerson detected;
    detected.score = person.score;
    detected.box = QRectF(person.box.x() / width, 1.0 - person.box.bottom() / height,
                          person.box.width() / width, person.box.height() / height);
    for (int k = 0; k < kBodyKeypointCount; ++k) {
        const BodyKeypoint& joint = person.keypoints[std::size_t(k)];
        const QString key = QString::fromLatin1(kJointKeys[std::size_t(k)]);
        const QPointF location(joint.position.x() / width, 1.0 - joint.position.y() / height);
        detected.joints.insert(key, JointSample{key, location, joint.score});
    }
    return detected;
}

} // namespace

MultiPoseBodyPoseDetector::MultiPoseBodyPoseDetector(std::unique_ptr<PersonDetector> people)
    : m_people(std::move(people))
{
}

MultiPoseBodyPoseDetector::~MultiPoseBodyPoseDetector() = default;

std::unique_ptr<MultiPoseBodyPoseDetector> MultiPoseBodyPoseDetector::load(QString* error)
{
    const QString relative = QString::fromLatin1(kModelPath);
    const QString model = ModelFiles::find(relative);
    if (model.isEmpty()) {
        if (error) {
            *error = QStringLiteral("未找到姿态模型 %1（已搜索: %2）；请运行 scripts/fetch-models.sh")
                         .arg(relative, AppPaths::modelSearchDirs().join(QStringLiteral(", ")));
        }
        return nullptr;
    }
    return loadFrom(model, error);
}

std::unique_ptr<MultiPoseBodyPoseDetector> MultiPoseBodyPoseDetector::loadFrom(const QString& modelPath,
                                                                               QString* error)
{
    auto network = MoveNetMultiPoseDetector::load(modelPath, 256, kMinInstanceScore);
    if (!network) {
        if (error)
            *error = QStringLiteral("姿态模型无法加载: ") + modelPath;
        return nullptr;
    }
    return std::make_unique<MultiPoseBodyPoseDetector>(std::move(network));
}

std::vector<QRect> MultiPoseBodyPoseDetector::tilesOf(QSize size)
{
    const int width = std::max(1, int(std::lround(size.width() * kTileShare)));
    const int height = std::max(1, int(std::lround(size.height() * kTileShare)));
    std::vector<QRect> tiles;
    for (const int top : {0, size.height() - height}) {
        for (const int left : {0, size.width() - width})
            tiles.emplace_back(left, top, width, height);
    }
    return tiles;
}

bool MultiPoseBodyPoseDetector::needsTiles(const std::vector<PersonDetection>& whole, QSize size)
{
    if (whole.size() >= kPeoplePerLook)
        return true;
    return std::none_of(whole.begin(), whole.end(), [size](const PersonDetection& person) {
        return person.box.height() >= size.height() * kSubjectShare ||
               person.box.width() >= size.width() * kSubjectShare;
    });
}

std::optional<BodyPoseDetection> MultiPoseBodyPoseDetector::detect(const QImage& image)
{
    if (image.isNull())
        return std::nullopt;
    BodyPoseDetection detection;
    QElapsedTimer timer;
    timer.start();
    PersonDetections whole = m_people->detect(image);
    ++detection.passes;
    if (!whole.error.isEmpty()) {
        Log::line(QStringLiteral("POSE"), QStringLiteral("❌ 姿态检测失败: ") + whole.error);
        return std::nullopt;
    }
    detection.wholePictureMs = timer.nsecsElapsed() / 1e6;
    std::vector<PersonDetection> people;
    for (const PersonDetection& person : whole.people)
        addSighting(people, person);

    if (needsTiles(whole.people, image.size())) {
        timer.restart();
        for (const QRect& tile : tilesOf(image.size())) {
            const PersonDetections found = m_people->detect(image.copy(tile));
            ++detection.passes;
            if (!found.error.isEmpty()) {
                Log::line(QStringLiteral("POSE"), QStringLiteral("❌ 姿态检测失败: ") + found.error);
                return std::nullopt;
            }
            for (const PersonDetection& person : found.people)
                addSighting(people, shifted(person, tile.topLeft()));
        }
        detection.tilesMs = timer.nsecsElapsed() / 1e6;
    }
    std::stable_sort(people.begin(), people.end(),
                     [](const PersonDetection& a, const PersonDetection& b) { return a.score > b.score; });
    for (const PersonDetection& person : people)
        detection.people.push_back(asDetectedPerson(person, image.size()));
    return detection;
}

} // namespace lumaro::platform
