// SPDX-License-Identifier: GPL-3.0-or-later
// What a decode is for and how urgent it is.
#pragma once

namespace lumaro::browse {

// Served in this order: the selected picture, what is on screen, what is likely to be next.
enum class ThumbnailPriority { current, visible, prefetch };

// A grid thumbnail (small, may come from the file's embedded thumbnail) or a preview (large, from the pixels).
enum class PictureKind { thumbnail, preview };

} // namespace lumaro::browse
