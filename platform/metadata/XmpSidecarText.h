// SPDX-License-Identifier: GPL-3.0-or-later
// A sidecar file's bytes and the XMP they hold, without Qt (exiv2): XmpSidecar and lumaro-cli's Qt-free XMP
// helper read and write sidecars by this one rule, so both leave the same bytes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Exiv2 {
class XmpData;
}

namespace lumaro::platform::XmpSidecarText {

// Reads `bytes` into `xmp`. Nothing but blanks, or an XML declaration alone (what an earlier version left
// when the last mark was taken off), holds no marks and is read as empty. False when they are not valid XMP.
// May throw what exiv2 throws.
bool decode(std::string_view bytes, Exiv2::XmpData& xmp);
// A sidecar's whole text for `xmp`: an XML declaration, then the packet in exiv2's compact form, or an empty
// description (still valid XMP for every reader) when it holds nothing. nullopt when exiv2 cannot encode it.
std::optional<std::string> encode(Exiv2::XmpData& xmp);

} // namespace lumaro::platform::XmpSidecarText
