// SPDX-License-Identifier: GPL-3.0-or-later
// JSON strings and numbers as lumaro-cli-light's QJsonDocument writes them (compact), for the front end's
// --json answers: the same bytes whichever program answers.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lumaro::cli {

// `utf8` in double quotes: '"' and '\' escaped, \b \f \n \r \t for those, \u00xx (lower-case hex) for the
// other control characters below 0x20; every other byte as it is.
std::string jsonString(std::string_view utf8);
// `number` as Qt writes a double: a whole number below 2^53 as an integer, any other the shortest text that
// reads back as it (1e+21, 1764000000.5, 1e-07), infinities and NaN as null.
std::string jsonNumber(double number);
// The strings (UTF-8) as a JSON array: ["a","b"].
std::string jsonArray(const std::vector<std::string>& utf8Strings);

} // namespace lumaro::cli
