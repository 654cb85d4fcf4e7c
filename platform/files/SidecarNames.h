// SPDX-License-Identifier: GPL-3.0-or-later
// Where an XMP sidecar of a picture may lie, by the names' bytes and without Qt: XmpSidecar looks there, and
// lumaro-cli's front end leaves a picture with one to the program that moves it along.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lumaro::platform {

// PICTURE.xmp and PICTURE.XMP (darktable's naming), then STEM.xmp and STEM.XMP (Lightroom's) when the name
// has an extension: the order they are looked for in.
std::vector<std::string> sidecarCandidates(std::string_view picture);

} // namespace lumaro::platform
