// SPDX-License-Identifier: GPL-3.0-or-later
// Puts right what the geometry of a detected skeleton shows to be wrong: a joint outside the picture or far
// outside its person, and left and right exchanged across the body.
#pragma once

#include "platform/JointSample.h"

#include <QMap>
#include <QRectF>
#include <QString>

namespace lumaro::pose {

enum class JointRepair
{
    outsideFrame, // the location lay outside the picture: dropped
    outsideBox,   // the location lay far outside the person's box, on someone or something else: dropped
    swappedSides, // left and right exchanged with its twin, which the limbs' lengths show
};

// "outsideFrame", "outsideBox", "swappedSides".
QString rawValue(JointRepair repair);

using JointRepairs = QMap<QString, JointRepair>; // joint key → what was done to it

// Pure, any thread. Works on located joints only. Sides are checked down each chain from the shoulders
// (shoulders → hips → knees → ankles, shoulders → elbows → wrists): a pair of twins is exchanged when linking
// each to the other side's parent is much shorter than linking it to its own, which is what a network that
// mixed up left and right leaves behind (two thighs forming an X); a person crossing their legs rarely comes
// near that ratio.
class SkeletonRepairer
{
public:
    // Crossed links must be shorter than this share of the straight ones for a pair to be exchanged. Set from
    // the geometry of a standing body (knees mixed up, each half a hip width outside the other hip, give
    // 0.82; knees crossed as people stand 0.98); no real photo of the test set needed an exchange, so it is
    // not tuned.
    static constexpr double kSwapRatio = 0.85;
    // How far outside its box (as a share of the box's size) a joint may lie.
    static constexpr double kBoxMargin = 0.15;

    JointRepairs repair(platform::JointDictionary& joints, const QRectF& box) const;
};

} // namespace lumaro::pose
