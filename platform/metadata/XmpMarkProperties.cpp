// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/metadata/XmpMarkProperties.h"

#include "platform/files/AsciiTrimmed.h"

#include <exiv2/exiv2.hpp>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace lumaro::platform::XmpMarkProperties {

namespace {

const char* const kLabel = "Xmp.xmp.Label";
const char* const kColorLabel = "Xmp.digiKam.ColorLabel";
const char* const kDarktableLabels = "Xmp.darktable.colorlabels";

struct Colour
{
    const char* name;  // ours, and the file tag's
    const char* label; // xmp:Label as Lightroom and digiKam spell it
    int darktable;     // index in darktable:colorlabels, −1 where darktable has no such colour
    int digiKam;       // digiKam:ColorLabel
};

constexpr std::array<Colour, 6> kColours{{
    {"red", "Red", 0, 1},
    {"yellow", "Yellow", 1, 3},
    {"orange", "Orange", -1, 2},
    {"green", "Green", 2, 4},
    {"blue", "Blue", 3, 5},
    {"purple", "Purple", 4, 6},
}};

bool sameIgnoringAsciiCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
        const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c; };
        return lower(x) == lower(y);
    });
}

template <typename Number> std::optional<Number> parsed(std::string_view text)
{
    text = asciiTrimmed(text);
    if (text.starts_with('+'))
        text.remove_prefix(1);
    Number value{};
    const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (status != std::errc() || end != text.data() + text.size() || text.empty())
        return std::nullopt;
    return value;
}

} // namespace

std::optional<long> number(const Exiv2::XmpData& xmp, const char* key)
{
    const auto it = xmp.findKey(Exiv2::XmpKey(key));
    if (it == xmp.end() || it->count() == 0)
        return std::nullopt;
    const auto value = parsed<double>(it->toString());
    // "inf", "nan" or beyond long's range: not a mark anyone wrote.
    if (!value || !(std::fabs(*value) < 1e15))
        return std::nullopt;
    return long(*value);
}

void erase(Exiv2::XmpData& xmp, const char* key)
{
    for (auto it = xmp.findKey(Exiv2::XmpKey(key)); it != xmp.end(); it = xmp.findKey(Exiv2::XmpKey(key)))
        xmp.erase(it);
}

std::vector<std::string> colours(const Exiv2::XmpData& xmp)
{
    std::array<bool, kColours.size()> named{};
    if (const auto it = xmp.findKey(Exiv2::XmpKey(kLabel)); it != xmp.end()) {
        const std::string label = it->toString();
        for (std::size_t i = 0; i < kColours.size(); ++i) {
            named[i] = named[i] || sameIgnoringAsciiCase(asciiTrimmed(label), kColours[i].label) ||
                       (kColours[i].digiKam == 6 && sameIgnoringAsciiCase(asciiTrimmed(label), "Magenta"));
        }
    }
    if (const auto it = xmp.findKey(Exiv2::XmpKey(kDarktableLabels)); it != xmp.end()) {
        for (long n = 0; n < it->count(); ++n) {
            const auto index = parsed<long>(it->toString(n));
            for (std::size_t i = 0; i < kColours.size(); ++i)
                named[i] =
                    named[i] || (index && kColours[i].darktable >= 0 && kColours[i].darktable == *index);
        }
    }
    if (const auto code = number(xmp, kColorLabel)) {
        for (std::size_t i = 0; i < kColours.size(); ++i)
            named[i] = named[i] || kColours[i].digiKam == *code;
    }
    std::vector<std::string> found;
    for (std::size_t i = 0; i < kColours.size(); ++i) {
        if (named[i])
            found.emplace_back(kColours[i].name);
    }
    return found;
}

void setColours(Exiv2::XmpData& xmp, const std::vector<std::string>& colours)
{
    erase(xmp, kLabel);
    erase(xmp, kColorLabel);
    erase(xmp, kDarktableLabels);
    const auto place = [&colours](const char* name) {
        return std::find(colours.begin(), colours.end(), name);
    };
    const Colour* last = nullptr;
    Exiv2::XmpArrayValue darktable(Exiv2::xmpSeq);
    for (const Colour& colour : kColours) {
        if (place(colour.name) == colours.end())
            continue;
        if (!last || place(colour.name) > place(last->name))
            last = &colour;
        if (colour.darktable >= 0)
            darktable.read(std::to_string(colour.darktable));
    }
    if (!last)
        return;
    // One label only in xmp:Label and digiKam: the colour given last.
    xmp[kLabel] = last->label;
    xmp[kColorLabel] = std::to_string(last->digiKam);
    if (darktable.count() > 0)
        xmp.add(Exiv2::XmpKey(kDarktableLabels), &darktable);
}

bool isColourName(const std::string& name)
{
    return std::any_of(kColours.begin(), kColours.end(), [&name](const Colour& c) { return name == c.name; });
}

} // namespace lumaro::platform::XmpMarkProperties
