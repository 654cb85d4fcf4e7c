// SPDX-License-Identifier: GPL-3.0-or-later
// Shot size: how far down the body the picture reaches, a small person is a long shot, a face filling the
// frame an extreme close-up; the picture takes its surest person's framing.
#include "pose/ShotSize.h"

#include "tests/pose/JointBuilder.h"

#include <gtest/gtest.h>

namespace lumaro::pose {
namespace {

using testing::joints;

// Located joints down the body to `lowest` (one of the keys below), as a picture cut there shows them.
platform::JointDictionary downTo(const char* lowest)
{
    platform::JointDictionary all = joints({{"nose", 0.50, 0.95},
                                            {"left_eye", 0.52, 0.96},
                                            {"right_eye", 0.48, 0.96},
                                            {"left_shoulder", 0.58, 0.85},
                                            {"right_shoulder", 0.42, 0.85},
                                            {"left_forearm", 0.60, 0.70},
                                            {"right_forearm", 0.40, 0.70},
                                            {"left_upLeg", 0.55, 0.50},
                                            {"right_upLeg", 0.45, 0.50},
                                            {"left_leg", 0.55, 0.30},
                                            {"right_leg", 0.45, 0.30},
                                            {"left_foot", 0.55, 0.10},
                                            {"right_foot", 0.45, 0.10}});
    const QStringList order{QStringLiteral("nose"),         QStringLiteral("left_shoulder"),
                            QStringLiteral("left_forearm"), QStringLiteral("left_upLeg"),
                            QStringLiteral("left_leg"),     QStringLiteral("left_foot")};
    const qsizetype keep = order.indexOf(QString::fromLatin1(lowest));
    for (platform::JointSample& joint : all) {
        const QString part = joint.name.section(u'_', -1);
        const qsizetype rank = joint.name == QStringLiteral("nose") || part == QStringLiteral("eye")
                                   ? 0
                                   : order.indexOf(QStringLiteral("left_") + part);
        if (rank > keep)
            joint.location.reset();
    }
    return all;
}

struct ShotCase
{
    const char* lowest;
    double boxHeight; // share of the picture
    ShotSize expected;
};

class ShotSizeOfAPerson : public ::testing::TestWithParam<ShotCase>
{
};

TEST_P(ShotSizeOfAPerson, FollowsTheLowestPartShownAndThePersonsSize)
{
    const ShotCase& row = GetParam();
    const auto shot = ShotSizeEstimator().classify(downTo(row.lowest), QRectF(0.3, 0.0, 0.2, row.boxHeight));
    ASSERT_TRUE(shot);
    EXPECT_EQ(rawValue(*shot), rawValue(row.expected));
}

INSTANTIATE_TEST_SUITE_P(Cases, ShotSizeOfAPerson,
                         ::testing::Values(ShotCase{"left_foot", 0.9, ShotSize::full},
                                           ShotCase{"left_leg", 0.9, ShotSize::mediumLong},
                                           ShotCase{"left_upLeg", 0.9, ShotSize::medium},
                                           ShotCase{"left_forearm", 0.9, ShotSize::mediumCloseUp},
                                           ShotCase{"left_shoulder", 0.9, ShotSize::closeUp},
                                           ShotCase{"left_foot", 0.29, ShotSize::long_},
                                           ShotCase{"left_foot", 0.31, ShotSize::full}));

TEST(ShotSizeOfAFace, EyesFarApartAreAnExtremeCloseUpAndNoJointIsNoShot)
{
    const auto face = joints({{"left_eye", 0.70, 0.6}, {"right_eye", 0.40, 0.6}, {"nose", 0.55, 0.45}});
    EXPECT_EQ(ShotSizeEstimator().classify(face, QRectF(0.1, 0.0, 0.8, 1.0)), ShotSize::extremeCloseUp);
    EXPECT_FALSE(ShotSizeEstimator().classify(joints({{"nose", 0.5, 0.5, 0.9f, false}}), QRectF(0, 0, 1, 1)));
}

TEST(ShotSizeOfAPicture, IsTheSurestPersonsAndNoneWithNobody)
{
    EXPECT_EQ(ShotSizeEstimator::forPicture({{ShotSize::closeUp, 0.29f}, {ShotSize::full, 0.67f}}),
              ShotSize::full);
    EXPECT_FALSE(ShotSizeEstimator::forPicture({}));
}

} // namespace
} // namespace lumaro::pose
