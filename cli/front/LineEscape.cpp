// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/LineEscape.h"

#include "platform/files/Utf8Sequence.h"

namespace lumaro::cli {

namespace {

void appendHex(std::string& out, unsigned char byte)
{
    static constexpr char digits[] = "0123456789abcdef";
    out += "\\x";
    out += digits[byte >> 4];
    out += digits[byte & 0xF];
}

} // namespace

std::string escapedLineBytes(std::string_view name)
{
    std::string out;
    out.reserve(name.size());
    appendEscapedLineBytes(out, name);
    return out;
}

void appendEscapedLineBytes(std::string& out, std::string_view name)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(name.data());
    size_t plainFrom = 0; // start of the bytes copied as they are, appended in one go
    for (size_t at = 0; at < name.size();) {
        const unsigned char c = bytes[at];
        const int length = c < 0x80 ? 1 : platform::utf8SequenceLength(bytes, name.size(), at);
        if (length > 1 || (length == 1 && c >= 0x20 && c != 0x7f && c != '\\')) {
            at += size_t(length);
            continue;
        }
        out.append(name.substr(plainFrom, at - plainFrom));
        if (c == '\\')
            out += "\\\\";
        else if (c == '\n')
            out += "\\n";
        else if (c == '\t')
            out += "\\t";
        else // a byte that is not UTF-8, or a control character
            appendHex(out, c);
        plainFrom = ++at;
    }
    out.append(name.substr(plainFrom));
}

} // namespace lumaro::cli
