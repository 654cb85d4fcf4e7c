// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/Utf8Sequence.h"

namespace lumaro::platform {

int utf8SequenceLength(const unsigned char* bytes, std::size_t size, std::size_t at)
{
    const unsigned char lead = bytes[at];
    if (lead < 0x80)
        return 1;
    int length = 0;
    char32_t minimum = 0;
    char32_t code = 0;
    if ((lead & 0xE0) == 0xC0) {
        length = 2, minimum = 0x80, code = lead & 0x1F;
    } else if ((lead & 0xF0) == 0xE0) {
        length = 3, minimum = 0x800, code = lead & 0x0F;
    } else if ((lead & 0xF8) == 0xF0) {
        length = 4, minimum = 0x10000, code = lead & 0x07;
    } else {
        return 0;
    }
    if (at + std::size_t(length) > size)
        return 0;
    for (int i = 1; i < length; ++i) {
        const unsigned char next = bytes[at + std::size_t(i)];
        if ((next & 0xC0) != 0x80)
            return 0;
        code = (code << 6) | (next & 0x3F);
    }
    if (code < minimum || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF))
        return 0;
    return length;
}

bool isValidUtf8(std::string_view text)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    for (std::size_t at = 0; at < text.size();) {
        const int length = utf8SequenceLength(bytes, text.size(), at);
        if (length == 0)
            return false;
        at += std::size_t(length);
    }
    return true;
}

} // namespace lumaro::platform
