// SPDX-License-Identifier: GPL-3.0-or-later
// Raises a picture's local contrast, so faint light text on a light ground stands out for a text reader.
#pragma once

#include <QImage>

namespace lumaro::platform {

// Pure function; any thread. Each pixel's lightness is measured against its neighbourhood (a Gaussian window
// about the size of a letter): its distance from the local mean in units of the local spread. A stamp a few
// grey levels above a flat white wall comes out as strong as black on white, while an area already full of
// contrast keeps about what it had. The result is grey (the reader needs no colour); null in, null out.
QImage withLocalContrast(const QImage& image);

} // namespace lumaro::platform
