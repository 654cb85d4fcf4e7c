// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/marks/RatingChange.h"

#include <algorithm>

namespace lumaro::browse {

using platform::PickFlag;

platform::PictureMarks RatingChange::appliedTo(platform::PictureMarks marks) const
{
    switch (kind) {
    case Kind::stars:
        marks.stars = std::clamp(stars, 0, 5);
        if (marks.flag == PickFlag::rejected)
            marks.flag = PickFlag::none;
        break;
    case Kind::togglePick:
        marks.flag = marks.flag == PickFlag::picked ? PickFlag::none : PickFlag::picked;
        break;
    case Kind::toggleReject:
        marks.flag = marks.flag == PickFlag::rejected ? PickFlag::none : PickFlag::rejected;
        break;
    case Kind::pick:
        marks.flag = PickFlag::picked;
        break;
    case Kind::reject:
        marks.flag = PickFlag::rejected;
        break;
    case Kind::clear:
        marks.stars = 0;
        marks.flag = PickFlag::none;
        break;
    }
    if (marks.flag == PickFlag::rejected)
        marks.stars = 0;
    return marks;
}

} // namespace lumaro::browse
