// SPDX-License-Identifier: GPL-3.0-or-later
// The size a picture is scaled to so that it fits a square, for every place that scales one down.
#pragma once

#include <QSize>
#include <QtGlobal>

#include <algorithm>

namespace lumaro::platform {

// `size` with its long side brought down to `maxSide`, proportions kept, neither side below one pixel: a
// 40000×8 panorama strip fitted into 256 is 256×1, not 256×0 (an empty size makes Qt return a null image and
// OpenCV assert). A size already within `maxSide`, or a `maxSide` of 0 or less, is returned as it is.
inline QSize fittedSize(QSize size, int maxSide)
{
    const int longSide = std::max(size.width(), size.height());
    if (maxSide <= 0 || longSide <= maxSide || size.isEmpty())
        return size;
    // Rounded down, as QSize::scaled does, so the sizes other code computes with Qt agree with these.
    const auto side = [&](int length) { return std::max(1, int(qint64(length) * maxSide / longSide)); };
    return QSize(side(size.width()), side(size.height()));
}

} // namespace lumaro::platform
