// SPDX-License-Identifier: GPL-3.0-or-later
// A file's bytes read by its name's bytes, without Qt: what FileNameCodec::readAll reads, for the Qt-free
// helpers that must read the same.
#pragma once

#include <optional>
#include <string>

namespace lumaro::platform {

// The file's first `limit` bytes (all of them when `limit` is negative), read in 64 KB steps so a large limit
// costs nothing for a small file; nullopt when it cannot be opened or read.
std::optional<std::string> readFileBytes(const char* path, long long limit = -1);

} // namespace lumaro::platform
