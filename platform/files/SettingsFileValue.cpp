// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/SettingsFileValue.h"

#include "platform/files/AsciiTrimmed.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <sstream>

namespace lumaro::platform {

namespace {

using Found = SettingsFileValue::Found;

SettingsFileValue unclear()
{
    return {Found::unclear, {}};
}

} // namespace

SettingsFileValue SettingsFileValue::parse(std::string_view contents, std::string_view key)
{
    SettingsFileValue result;
    bool topLevel = true;
    for (std::size_t start = 0; start < contents.size();) {
        const std::size_t end = std::min(contents.find('\n', start), contents.size());
        const std::string_view line = asciiTrimmed(contents.substr(start, end - start));
        start = end + 1;
        if (line.starts_with('[')) {
            topLevel = line == "[General]";
            continue;
        }
        if (!topLevel)
            continue;
        // A line continued on the next one could carry the key into it.
        if (line.ends_with('\\'))
            return unclear();
        if (line.find(key) == std::string_view::npos)
            continue;
        const std::size_t equals = line.find('=');
        if (equals == std::string_view::npos || asciiTrimmed(line.substr(0, equals)) != key ||
            result.found != Found::absent)
            return unclear();
        const std::string_view value = asciiTrimmed(line.substr(equals + 1));
        // Quotes, escapes, "@Variant(…)", lists and comments are QSettings's to read.
        if (value.find_first_of("\"\\@,;") != std::string_view::npos)
            return unclear();
        result = {Found::plain, std::string(value)};
    }
    return result;
}

SettingsFileValue SettingsFileValue::read(const std::string& file, std::string_view key)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        return errno == ENOENT ? SettingsFileValue{} : unclear();
    std::ostringstream contents;
    contents << stream.rdbuf();
    if (stream.bad())
        return unclear();
    return parse(contents.str(), key);
}

} // namespace lumaro::platform
