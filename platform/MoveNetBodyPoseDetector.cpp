// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/MoveNetBodyPoseDetector.h"

#include "platform/AppPaths.h"
#include "platform/ForeignCall.h"
#include "platform/Log.h"
#include "platform/picture/FittedSize.h"
#include "platform/vision/FaceDetector.h"
#include "platform/vision/ModelFiles.h"

#include <QElapsedTimer>
#include <QFile>

#include <opencv2/dnn.hpp>
#include <opencv2/imgproc.hpp>

#include <array>
#include <cmath>

namespace lumaro::platform {

namespace {

constexpr int kInputSide = 192;
constexpr int kGrid = 48;
constexpr int kKeypoints = 17;

// Chosen from the scores measured on the shared test photos: joints really in view scored 0.38–0.85
// (messi5: all 17, lowest an elbow at 0.38; basketball1: 15, lowest 0.45), joints cut off by the frame or
// hidden scored 0.02–0.29 (astronaut's legs, basketball1's feet on the bottom edge), and on pictures without a
// person the best "joint" reached 0.28 (eagle, horses, cat, coffee, orange, motorcycle). 0.3 sits in that gap.
constexpr float kConfidenceFloor = 0.3f;
// A whole-picture result with no face to anchor it counts as a person only when this many joints score at
// least kSureScore: the people photos gave 15–16, the dog photo (no person, but a dog MoveNet half believes
// in) 7, the building 4, everything else 0.
constexpr int kMinimumSureJoints = 10;
constexpr float kSureScore = 0.4f;
// A face-anchored result still needs a few located joints: YuNet takes the cat of chelsea.png for a face
// (0.78), and MoveNet then finds nothing above 0.27 there, while astronaut.png, a head and shoulders, has 10.
constexpr int kMinimumAnchoredJoints = 3;
constexpr int kFaceSearchSide = 640;
// Two face regions can show MoveNet the same most-central person (a small background face beside the subject):
// skeletons whose shared joints lie this close on average (normalised units) are one person.
constexpr double kSamePersonDistance = 0.03;

// COCO-17 order of the model's outputs, as keys of the joint dictionary (left and right are the subject's).
constexpr std::array<const char*, kKeypoints> kJointKeys{
    "nose",          "left_eye",       "right_eye",    "left_ear",      "right_ear",  "left_shoulder",
    "right_shoulder", "left_forearm",  "right_forearm", "left_hand",    "right_hand", "left_upLeg",
    "right_upLeg",   "left_leg",       "right_leg",    "left_foot",     "right_foot"};

struct Keypoint
{
    double x = 0.0; // picture pixels, y downward
    double y = 0.0;
    float score = 0.0f;
};

cv::Mat rgbMat(const QImage& rgb)
{
    return cv::Mat(rgb.height(), rgb.width(), CV_8UC3, const_cast<uchar*>(rgb.constBits()),
                   std::size_t(rgb.bytesPerLine()));
}

int argmax(const float* values, int count)
{
    int best = 0;
    for (int i = 1; i < count; ++i) {
        if (values[i] > values[best])
            best = i;
    }
    return best;
}

// MoveNet's own post-processing: the most likely person centre, its regressed joints, and for each joint the
// heat-map peak weighted towards the regressed position. Coordinates come back in 0–1 of the square input.
std::array<Keypoint, kKeypoints> decode(const std::vector<cv::Mat>& outputs)
{
    const float* heatmap = outputs[0].ptr<float>();
    const float* center = outputs[1].ptr<float>();
    const float* regress = outputs[2].ptr<float>();
    const float* offset = outputs[3].ptr<float>();
    constexpr int plane = kGrid * kGrid;
    const int centerIndex = argmax(center, plane);
    const int cy = centerIndex / kGrid;
    const int cx = centerIndex % kGrid;
    std::array<Keypoint, kKeypoints> keypoints;
    for (int k = 0; k < kKeypoints; ++k) {
        const double ry = cy + regress[(2 * k) * plane + centerIndex];
        const double rx = cx + regress[(2 * k + 1) * plane + centerIndex];
        const float* map = heatmap + k * plane;
        int best = 0;
        double bestValue = -1.0;
        for (int y = 0; y < kGrid; ++y) {
            for (int x = 0; x < kGrid; ++x) {
                const double weighted = map[y * kGrid + x] / (std::hypot(y - ry, x - rx) + 1.8);
                if (weighted > bestValue) {
                    bestValue = weighted;
                    best = y * kGrid + x;
                }
            }
        }
        const int ky = best / kGrid;
        const int kx = best % kGrid;
        keypoints[k].y = (ky + offset[(2 * k) * plane + best]) / kGrid;
        keypoints[k].x = (kx + offset[(2 * k + 1) * plane + best]) / kGrid;
        keypoints[k].score = map[best];
    }
    return keypoints;
}

// The region a face's person most likely fills: about nine face heights from just above the head down, as
// wide as it is tall, centred on the face. MoveNet picks the most central person of what it is shown.
cv::Rect personRegion(const cv::Rect2f& face, cv::Size picture)
{
    const float side = face.height * 9.0f;
    const float left = face.x + face.width / 2.0f - side / 2.0f;
    const float top = face.y - face.height * 0.8f;
    const cv::Rect region(cv::Point(int(std::floor(left)), int(std::floor(top))),
                          cv::Size(int(std::ceil(side)), int(std::ceil(side))));
    return region & cv::Rect(cv::Point(0, 0), picture);
}

double confidenceSum(const JointDictionary& joints)
{
    double sum = 0.0;
    for (const JointSample& joint : joints)
        sum += joint.confidence;
    return sum;
}

bool isSamePerson(const JointDictionary& one, const JointDictionary& other)
{
    double total = 0.0;
    int shared = 0;
    for (const JointSample& joint : one) {
        const auto twin = other.constFind(joint.name);
        if (!joint.location || twin == other.constEnd() || !twin->location)
            continue;
        total += std::hypot(joint.location->x() - twin->location->x(), joint.location->y() - twin->location->y());
        ++shared;
    }
    return shared > 0 && total / shared < kSamePersonDistance;
}

// Adds `person` unless it is one already found; of two sightings the surer one stays.
void addPerson(std::vector<DetectedPerson>& people, DetectedPerson person)
{
    for (DetectedPerson& known : people) {
        if (!isSamePerson(known.joints, person.joints))
            continue;
        if (confidenceSum(person.joints) > confidenceSum(known.joints))
            known = std::move(person);
        return;
    }
    people.push_back(std::move(person));
}

} // namespace

struct MoveNetBodyPoseDetector::Backend
{
    cv::dnn::Net moveNet;
    std::unique_ptr<FaceDetector> faces;

    // The regions the picture's faces open; nullopt when the face detector could not look at the picture.
    std::optional<std::vector<cv::Rect>> personRegions(const QImage& image, cv::Size picture)
    {
        if (!faces)
            return std::vector<cv::Rect>();
        // Faces are searched on a copy of at most kFaceSearchSide: the face detector's time grows with the
        // pixel count, and a face smaller than about 10 px there belongs to a person too small for MoveNet.
        const QImage searched = image.scaled(fittedSize(image.size(), kFaceSearchSide), Qt::IgnoreAspectRatio,
                                             Qt::SmoothTransformation);
        const double back = double(image.width()) / searched.width();
        const FaceDetection found = faces->detect(searched);
        if (!found.error.isEmpty()) {
            Log::line(QStringLiteral("POSE"), QStringLiteral("❌ 人脸检测失败: ") + found.error);
            return std::nullopt;
        }
        std::vector<cv::Rect> regions;
        for (const FaceBox& face : found.faces) {
            const cv::Rect2f box(float(face.box.x() * back), float(face.box.y() * back),
                                 float(face.box.width() * back), float(face.box.height() * back));
            const cv::Rect region = personRegion(box, picture);
            if (!region.empty())
                regions.push_back(region);
        }
        return regions;
    }

    // Keypoints of the most central person in `region`, in picture pixels.
    std::array<Keypoint, kKeypoints> keypointsIn(const cv::Mat& rgb, const cv::Rect& region)
    {
        // Pad to a centred black square so the picture keeps its proportions.
        const int side = std::max(region.width, region.height);
        const int padX = (side - region.width) / 2;
        const int padY = (side - region.height) / 2;
        cv::Mat square(side, side, CV_8UC3, cv::Scalar::all(0));
        rgb(region).copyTo(square(cv::Rect(padX, padY, region.width, region.height)));
        cv::Mat input;
        cv::resize(square, input, cv::Size(kInputSide, kInputSide), 0, 0, cv::INTER_AREA);
        moveNet.setInput(cv::dnn::blobFromImage(input, 1.0, cv::Size(kInputSide, kInputSide), cv::Scalar(), false,
                                                false, CV_32F));
        std::vector<cv::Mat> outputs;
        moveNet.forward(outputs, std::vector<cv::String>{"heatmap", "center", "regress", "offset"});
        auto keypoints = decode(outputs);
        for (Keypoint& point : keypoints) {
            point.x = region.x + point.x * side - padX;
            point.y = region.y + point.y * side - padY;
        }
        return keypoints;
    }
};

MoveNetBodyPoseDetector::MoveNetBodyPoseDetector(std::unique_ptr<Backend> backend)
    : m_backend(std::move(backend))
{
}

MoveNetBodyPoseDetector::~MoveNetBodyPoseDetector() = default;

std::unique_ptr<MoveNetBodyPoseDetector> MoveNetBodyPoseDetector::load(QString* error)
{
    const QString relative = QStringLiteral("pose/") + QString::fromLatin1(kModelFile);
    const QString model = ModelFiles::find(relative);
    if (model.isEmpty()) {
        if (error) {
            *error = QStringLiteral("未找到姿态模型 %1（已搜索: %2）；请运行 scripts/fetch-models.sh")
                         .arg(relative, AppPaths::modelSearchDirs().join(QStringLiteral(", ")));
        }
        return nullptr;
    }
    return loadFrom(model, makeFaceDetector(), error);
}

std::unique_ptr<MoveNetBodyPoseDetector> MoveNetBodyPoseDetector::loadFrom(const QString& modelPath,
                                                                           std::unique_ptr<FaceDetector> faces,
                                                                           QString* error)
{
    auto backend = std::make_unique<Backend>();
    try {
        backend->moveNet = cv::dnn::readNetFromONNX(QFile::encodeName(modelPath).toStdString());
    } catch (const std::exception& failure) {
        if (error)
            *error = QStringLiteral("姿态模型无法加载: ") + modelPath + QStringLiteral(" (") +
                     QString::fromUtf8(failure.what()) + QStringLiteral(")");
        return nullptr;
    }
    if (backend->moveNet.empty()) {
        if (error)
            *error = QStringLiteral("姿态模型无法加载: ") + modelPath;
        return nullptr;
    }
    backend->faces = std::move(faces);
    return std::unique_ptr<MoveNetBodyPoseDetector>(new MoveNetBodyPoseDetector(std::move(backend)));
}

bool MoveNetBodyPoseDetector::hasFaceDetector() const
{
    return bool(m_backend->faces);
}

std::optional<BodyPoseDetection> MoveNetBodyPoseDetector::detect(const QImage& image)
{
    std::lock_guard lock(m_mutex);
    return guardedForeignCall([&] { return detectPeople(image); },
                              [](const QString& reason) -> std::optional<BodyPoseDetection> {
                                  Log::line(QStringLiteral("POSE"),
                                            QStringLiteral("❌ 姿态检测失败: ") + reason);
                                  return std::nullopt;
                              });
}

std::optional<BodyPoseDetection> MoveNetBodyPoseDetector::detectPeople(const QImage& image)
{
    if (image.isNull())
        return std::nullopt;
    const QImage rgb = image.convertToFormat(QImage::Format_RGB888);
    const cv::Mat picture = rgbMat(rgb);
    const double width = picture.cols;
    const double height = picture.rows;

    BodyPoseDetection detection;
    QElapsedTimer timer;
    timer.start();
    std::optional<std::vector<cv::Rect>> found = m_backend->personRegions(image, picture.size());
    if (!found)
        return std::nullopt;
    std::vector<cv::Rect> regions = std::move(*found);
    const bool anchoredByFaces = !regions.empty();
    if (!anchoredByFaces)
        regions.push_back(cv::Rect(0, 0, picture.cols, picture.rows));
    detection.personSearchMs = timer.nsecsElapsed() / 1e6;
    timer.restart();
    for (const cv::Rect& region : regions) {
        const auto keypoints = m_backend->keypointsIn(picture, region);
        DetectedPerson person;
        int sure = 0;
        int located = 0;
        for (int k = 0; k < kKeypoints; ++k) {
            const QString key = QString::fromLatin1(kJointKeys[std::size_t(k)]);
            JointSample joint{key, std::nullopt, keypoints[std::size_t(k)].score};
            if (joint.confidence >= kSureScore)
                ++sure;
            if (joint.confidence >= kConfidenceFloor) {
                ++located;
                joint.location =
                    QPointF(keypoints[std::size_t(k)].x / width, 1.0 - keypoints[std::size_t(k)].y / height);
            }
            person.joints.insert(key, joint);
        }
        if (anchoredByFaces ? located < kMinimumAnchoredJoints : sure < kMinimumSureJoints)
            continue;
        person.searchRegion = QRectF(region.x / width, 1.0 - (region.y + region.height) / height,
                                     region.width / width, region.height / height);
        addPerson(detection.people, std::move(person));
    }
    detection.keypointMs = timer.nsecsElapsed() / 1e6;
    return detection;
}

} // namespace lumaro::platform
