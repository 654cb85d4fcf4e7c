// SPDX-License-Identifier: GPL-3.0-or-later
// Which XMP properties carry a picture's marks, and how colours are spelled in each, without Qt: XmpSidecar
// and lumaro-cli's Qt-free XMP helper read and write them by this one rule.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Exiv2 {
class XmpData;
}

namespace lumaro::platform::XmpMarkProperties {

inline constexpr const char* rating = "Xmp.xmp.Rating";
inline constexpr const char* pickLabel = "Xmp.digiKam.PickLabel";

// The property's whole-number value ("3", "3.0", " -1 "), nullopt when it is missing or not a number.
std::optional<long> number(const Exiv2::XmpData& xmp, const char* key);
// Removes every value of the property.
void erase(Exiv2::XmpData& xmp, const char* key);

// Our colour names (red, yellow, orange, green, blue, purple) that xmp:Label, darktable:colorlabels or
// digiKam:ColorLabel name, in that order of colours whichever property named them.
std::vector<std::string> colours(const Exiv2::XmpData& xmp);
// Writes `colours` (our names, others ignored) into all three properties: darktable's list takes each colour
// it knows, xmp:Label and digiKam's single label the one given last. None removes them.
void setColours(Exiv2::XmpData& xmp, const std::vector<std::string>& colours);
// Whether `name` is one of our colour names.
bool isColourName(const std::string& name);

} // namespace lumaro::platform::XmpMarkProperties
