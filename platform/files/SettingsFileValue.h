// SPDX-License-Identifier: GPL-3.0-or-later
// One top-level value of the settings file (QSettingsStore's INI file) read by its bytes, without Qt, for
// lumaro-cli's Qt-free helpers. It answers only the plain forms, where it and QSettings cannot differ, and
// says so for the rest (quoted, escaped or typed values, a list, a key written twice), which the helper then
// leaves to a program that reads the settings through Qt.
#pragma once

#include <string>
#include <string_view>

namespace lumaro::platform {

struct SettingsFileValue
{
    enum class Found
    {
        absent,  // no such key, or no settings file
        plain,   // `text` is its value
        unclear, // the file could not be read, or holds the key in a form only QSettings settles
    };
    Found found = Found::absent;
    std::string text;

    // The key's value in the file's [General] section (or before any section), as QSettings reads it.
    static SettingsFileValue read(const std::string& file, std::string_view key);
    // The same, from the file's contents.
    static SettingsFileValue parse(std::string_view contents, std::string_view key);
};

} // namespace lumaro::platform
