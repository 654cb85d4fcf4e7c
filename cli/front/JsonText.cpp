// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/JsonText.h"

#include <charconv>
#include <cmath>
#include <iterator>
#include <string>

namespace lumaro::cli {

std::string jsonString(std::string_view utf8)
{
    static constexpr char hex[] = "0123456789abcdef";
    std::string text;
    text.reserve(utf8.size() + 2);
    text += '"';
    for (const char c : utf8) {
        switch (c) {
        case '"':
            text += "\\\"";
            break;
        case '\\':
            text += "\\\\";
            break;
        case '\b':
            text += "\\b";
            break;
        case '\f':
            text += "\\f";
            break;
        case '\n':
            text += "\\n";
            break;
        case '\r':
            text += "\\r";
            break;
        case '\t':
            text += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20) {
                text += "\\u00";
                text += hex[c >> 4];
                text += hex[c & 0xF];
            } else {
                text += c;
            }
        }
    }
    text += '"';
    return text;
}

std::string jsonNumber(double number)
{
    if (!std::isfinite(number))
        return "null";
    constexpr double exactWholeNumbers = 9007199254740992.0; // 2^53
    if (std::trunc(number) == number && std::fabs(number) < exactWholeNumbers)
        return std::to_string(static_cast<long long>(number));
    // The shortest digits that read back as the number, and where the point goes; then Qt's choice between
    // the fixed and the exponent form: the shorter, the fixed one on a tie.
    char scientific[32];
    const auto end = std::to_chars(std::begin(scientific), std::end(scientific), std::fabs(number),
                                   std::chars_format::scientific)
                         .ptr;
    const std::string_view text(scientific, size_t(end - scientific));
    const size_t e = text.find('e');
    std::string digits(text.substr(0, e));
    if (digits.size() > 1)
        digits.erase(1, 1); // the point
    const int exponent = std::stoi(std::string(text.substr(e + 1)));
    const int point = exponent + 1; // digits before the decimal point
    std::string fixed;
    if (point <= 0)
        fixed = "0." + std::string(size_t(-point), '0') + digits;
    else if (point >= int(digits.size()))
        fixed = digits + std::string(size_t(point) - digits.size(), '0');
    else
        fixed = digits.substr(0, size_t(point)) + "." + digits.substr(size_t(point));
    const std::string magnitude = std::to_string(std::abs(exponent));
    const std::string withExponent = digits.substr(0, 1) + (digits.size() > 1 ? "." + digits.substr(1) : "") +
                                     (exponent < 0 ? "e-" : "e+") + (magnitude.size() < 2 ? "0" : "") +
                                     magnitude;
    const std::string& shorter = withExponent.size() < fixed.size() ? withExponent : fixed;
    return (number < 0 ? "-" : "") + shorter;
}

std::string jsonArray(const std::vector<std::string>& utf8Strings)
{
    std::string json = "[";
    for (const std::string& text : utf8Strings)
        json += (json.size() > 1 ? "," : "") + jsonString(text);
    return json + "]";
}

} // namespace lumaro::cli
