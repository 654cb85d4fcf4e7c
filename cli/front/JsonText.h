// SPDX-License-Identifier: GPL-3.0-or-later
// A JSON string as lumaro-cli-light's QJsonDocument writes it (compact), for the front end's --json answers:
// the same bytes whichever program answers.
#pragma once

#include <string>
#include <string_view>

namespace lumaro::cli {

// `utf8` in double quotes: '"' and '\' escaped, \b \f \n \r \t for those, \u00xx (lower-case hex) for the
// other control characters below 0x20; every other byte as it is.
std::string jsonString(std::string_view utf8);

} // namespace lumaro::cli
