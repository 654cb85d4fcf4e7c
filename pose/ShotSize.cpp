// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/ShotSize.h"

#include <algorithm>
#include <cmath>

namespace lumaro::pose {

namespace {

bool shows(const platform::JointDictionary& joints, std::initializer_list<const char*> keys)
{
    return std::any_of(keys.begin(), keys.end(), [&joints](const char* key) {
        const auto found = joints.constFind(QString::fromLatin1(key));
        return found != joints.constEnd() && found->location.has_value();
    });
}

std::optional<double> eyeSpan(const platform::JointDictionary& joints)
{
    const auto left = joints.value(QStringLiteral("left_eye")).location;
    const auto right = joints.value(QStringLiteral("right_eye")).location;
    if (!left || !right)
        return std::nullopt;
    return std::hypot(left->x() - right->x(), left->y() - right->y());
}

// How far down the body the picture reaches, from the lowest part it shows.
std::optional<ShotSize> byLowestPart(const platform::JointDictionary& joints)
{
    if (shows(joints, {"left_foot", "right_foot"}))
        return ShotSize::full;
    if (shows(joints, {"left_leg", "right_leg"}))
        return ShotSize::mediumLong;
    if (shows(joints, {"left_upLeg", "right_upLeg"}))
        return ShotSize::medium;
    if (shows(joints, {"left_forearm", "right_forearm"}))
        return ShotSize::mediumCloseUp;
    if (shows(joints, {"left_shoulder", "right_shoulder"}))
        return ShotSize::closeUp;
    if (shows(joints, {"nose", "left_eye", "right_eye", "left_ear", "right_ear", "left_hand", "right_hand"}))
        return ShotSize::extremeCloseUp;
    return std::nullopt;
}

} // namespace

QString rawValue(ShotSize size)
{
    switch (size) {
    case ShotSize::extremeCloseUp:
        return QStringLiteral("extremeCloseUp");
    case ShotSize::closeUp:
        return QStringLiteral("closeUp");
    case ShotSize::mediumCloseUp:
        return QStringLiteral("mediumCloseUp");
    case ShotSize::medium:
        return QStringLiteral("medium");
    case ShotSize::mediumLong:
        return QStringLiteral("mediumLong");
    case ShotSize::full:
        return QStringLiteral("full");
    case ShotSize::long_:
        return QStringLiteral("long");
    }
    return {};
}

QString displayName(ShotSize size)
{
    switch (size) {
    case ShotSize::extremeCloseUp:
        return QStringLiteral("大特写");
    case ShotSize::closeUp:
        return QStringLiteral("特写");
    case ShotSize::mediumCloseUp:
        return QStringLiteral("近景");
    case ShotSize::medium:
        return QStringLiteral("中景");
    case ShotSize::mediumLong:
        return QStringLiteral("中全景");
    case ShotSize::full:
        return QStringLiteral("全景");
    case ShotSize::long_:
        return QStringLiteral("远景");
    }
    return {};
}

std::optional<ShotSize> ShotSizeEstimator::classify(const platform::JointDictionary& joints,
                                                    const QRectF& box) const
{
    const std::optional<ShotSize> reach = byLowestPart(joints);
    if (!reach)
        return std::nullopt;
    if (std::max(box.height(), box.width()) < kLongShare)
        return ShotSize::long_;
    if (const auto span = eyeSpan(joints); span && *span >= kExtremeEyeSpan)
        return ShotSize::extremeCloseUp;
    return reach;
}

std::optional<ShotSize>
ShotSizeEstimator::forPicture(const std::vector<std::pair<std::optional<ShotSize>, float>>& people)
{
    std::optional<ShotSize> shot;
    float surest = -1.0f;
    for (const auto& [size, score] : people) {
        if (size && score > surest) {
            surest = score;
            shot = size;
        }
    }
    return shot;
}

} // namespace lumaro::pose
