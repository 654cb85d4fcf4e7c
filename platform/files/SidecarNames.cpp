// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/SidecarNames.h"

namespace lumaro::platform {

std::vector<std::string> sidecarCandidates(std::string_view picture)
{
    const std::string whole(picture);
    std::vector<std::string> candidates{whole + ".xmp", whole + ".XMP"};
    const size_t slash = picture.rfind('/');
    const size_t nameStart = slash == std::string_view::npos ? 0 : slash + 1;
    const size_t dot = picture.rfind('.');
    if (dot != std::string_view::npos && dot > nameStart) {
        const std::string stem(picture.substr(0, dot));
        candidates.push_back(stem + ".xmp");
        candidates.push_back(stem + ".XMP");
    }
    return candidates;
}

} // namespace lumaro::platform
