// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/JsonText.h"

namespace lumaro::cli {

std::string jsonString(std::string_view utf8)
{
    static constexpr char hex[] = "0123456789abcdef";
    std::string text;
    text.reserve(utf8.size() + 2);
    text += '"';
    for (const char c : utf8) {
        switch (c) {
        case '"': text += "\\\""; break;
        case '\\': text += "\\\\"; break;
        case '\b': text += "\\b"; break;
        case '\f': text += "\\f"; break;
        case '\n': text += "\\n"; break;
        case '\r': text += "\\r"; break;
        case '\t': text += "\\t"; break;
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

} // namespace lumaro::cli
