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
    const auto* bytes = reinterpret_cast<const unsigned char*>(name.data());
    std::string out;
    out.reserve(name.size());
    for (size_t at = 0; at < name.size();) {
        const int length = platform::utf8SequenceLength(bytes, name.size(), at);
        if (length > 1) {
            out.append(name.substr(at, size_t(length)));
            at += size_t(length);
            continue;
        }
        const unsigned char c = bytes[at++];
        if (c == '\\')
            out += "\\\\";
        else if (c == '\n')
            out += "\\n";
        else if (c == '\t')
            out += "\\t";
        else if (length == 0 || c < 0x20 || c == 0x7f) // a byte that is not UTF-8, or a control character
            appendHex(out, c);
        else
            out += char(c);
    }
    return out;
}

} // namespace lumaro::cli
