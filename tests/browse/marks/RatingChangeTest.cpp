// SPDX-License-Identifier: GPL-3.0-or-later
// Stars and a reject exclude each other; a pick keeps the stars.
#include "browse/marks/RatingChange.h"

#include <gtest/gtest.h>

namespace lumaro::browse {
namespace {

using platform::PickFlag;
using platform::PictureMarks;
using Kind = RatingChange::Kind;

TEST(RatingChange, StarsPicksAndRejects)
{
    struct Case
    {
        PictureMarks before;
        RatingChange change;
        PictureMarks after;
    };
    const Case cases[] = {
        {{3, PickFlag::none}, {Kind::togglePick}, {3, PickFlag::picked}},
        {{3, PickFlag::picked}, {Kind::togglePick}, {3, PickFlag::none}},
        {{4, PickFlag::picked}, {Kind::toggleReject}, {0, PickFlag::rejected}},
        {{0, PickFlag::rejected}, {Kind::toggleReject}, {0, PickFlag::none}},
        {{0, PickFlag::rejected}, RatingChange::toStars(2), {2, PickFlag::none}},
        {{1, PickFlag::picked}, RatingChange::toStars(9), {5, PickFlag::picked}},
        {{0, PickFlag::rejected}, {Kind::pick}, {0, PickFlag::picked}},
        {{5, PickFlag::picked}, {Kind::clear}, {0, PickFlag::none}},
    };
    for (const Case& c : cases) {
        const PictureMarks after = c.change.appliedTo(c.before);
        EXPECT_EQ(after.stars, c.after.stars) << int(c.change.kind);
        EXPECT_EQ(after.flag, c.after.flag) << int(c.change.kind);
    }
}

} // namespace
} // namespace lumaro::browse
