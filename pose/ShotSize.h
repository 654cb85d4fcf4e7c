// SPDX-License-Identifier: GPL-3.0-or-later
// The framing of a person (shot size), from which of their joints the picture shows and how tall they stand
// in it, and the framing of a whole picture.
#pragma once

#include "platform/JointSample.h"

#include <QRectF>
#include <QString>

#include <optional>
#include <vector>

namespace lumaro::pose {

// Tightest first, so the order sorts pictures from the closest framing to the widest.
enum class ShotSize
{
    extremeCloseUp, // part of the face
    closeUp,        // head and shoulders
    mediumCloseUp,  // to the chest
    medium,         // to the waist
    mediumLong,     // to the knees
    full,           // head to feet
    long_,          // the person small in the frame
};

// "extremeCloseUp", "closeUp", "mediumCloseUp", "medium", "mediumLong", "full", "long".
QString rawValue(ShotSize size);
// The photographer's Chinese name: "大特写", "特写", "近景", "中景", "中全景", "全景", "远景".
QString displayName(ShotSize size);

// Pure, any thread. Works on located joints only (after the quality filter).
class ShotSizeEstimator
{
public:
    // A person whose box is shorter than this share of the picture (and narrower than it, lying down) is
    // small in the frame: a long shot, whatever of them shows. The walkers of kite.jpg are 0.17 tall, the
    // back view of person.jpg 0.65, twelve players in two rows 0.45.
    static constexpr double kLongShare = 0.3;
    // Eyes this far apart (as a share of the picture's width) mean the face fills the frame.
    static constexpr double kExtremeEyeSpan = 0.25;

    // `box` normalised like the joints. nullopt when no joint is located.
    std::optional<ShotSize> classify(const platform::JointDictionary& joints, const QRectF& box) const;
    // The picture's framing: that of the person the detector is surest of, its subject (a player half out of
    // the frame beside him may have the larger box), nullopt with nobody. Each entry: shot size and score.
    static std::optional<ShotSize>
    forPicture(const std::vector<std::pair<std::optional<ShotSize>, float>>& people);
};

} // namespace lumaro::pose
