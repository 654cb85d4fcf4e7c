// SPDX-License-Identifier: GPL-3.0-or-later
// Where a file name's bytes stop being UTF-8: the one rule FileNameCodec decodes by and lumaro-cli's Qt-free
// front end escapes by, so both treat the same bytes as raw.
#pragma once

#include <cstddef>
#include <string_view>

namespace lumaro::platform {

// Length of the valid UTF-8 sequence at `at` (1 for ASCII), or 0 when the bytes there are not one: overlong
// forms, surrogates, code points past U+10FFFF and sequences cut short by the end are not valid. Any thread.
int utf8SequenceLength(const unsigned char* bytes, std::size_t size, std::size_t at);
// Whether every byte of `text` belongs to a valid sequence.
bool isValidUtf8(std::string_view text);

} // namespace lumaro::platform
