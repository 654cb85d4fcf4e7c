// SPDX-License-Identifier: GPL-3.0-or-later
// Which of a folder's pictures are shown: only picks, only a rating of at least n stars, only a colour, or
// everything but the rejects.
#pragma once

#include "browse/state/ImageAnnotation.h"
#include "platform/metadata/PictureMarks.h"

#include <QString>

namespace lumaro::browse {

// A value; the conditions that are set must all hold. The default filter lets every picture through. Pure;
// any thread.
struct PictureFilter
{
    bool picksOnly = false;
    int minStars = 0; // 0: any rating
    QString colour;   // "red" … "purple"; empty: any
    bool hideRejects = false;

    bool isActive() const { return picksOnly || minStars > 0 || !colour.isEmpty() || hideRejects; }
    bool accepts(const platform::PictureMarks& marks, const ImageAnnotation& annotation) const;
    // "仅精选 · ≥3 星 · 红色 · 隐藏废片", or empty when it lets everything through.
    QString description() const;

    // The steps the keys take: picks on or off, rejects hidden or shown, the star floor 0→1→…→5→0, the
    // colour none→red→…→purple→none.
    PictureFilter withPicksToggled() const;
    PictureFilter withRejectsToggled() const;
    PictureFilter withNextMinStars() const;
    PictureFilter withNextColour() const;

    friend bool operator==(const PictureFilter&, const PictureFilter&) = default;
};

} // namespace lumaro::browse
