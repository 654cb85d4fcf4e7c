// SPDX-License-Identifier: GPL-3.0-or-later
// One change to a picture's stars or pick/reject, as a key or the command line asks for it.
#pragma once

#include "platform/metadata/PictureMarks.h"

namespace lumaro::browse {

// Stars and a reject exclude each other (a reject is stored as rating −1): giving stars takes a reject
// back, rejecting drops the stars. A pick keeps its stars. Pure; any thread.
struct RatingChange
{
    enum class Kind
    {
        stars,        // set `stars` (0–5)
        togglePick,   // pick, or take the pick back
        toggleReject, // reject, or take the reject back
        pick,
        reject,
        clear, // no stars, no pick, no reject
    };

    Kind kind = Kind::clear;
    int stars = 0;

    static RatingChange toStars(int count) { return {Kind::stars, count}; }
    platform::PictureMarks appliedTo(platform::PictureMarks marks) const;
};

} // namespace lumaro::browse
