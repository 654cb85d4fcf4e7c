// SPDX-License-Identifier: GPL-3.0-or-later
// A rename that never replaces what is already at the target, by the names' bytes (no Qt).
#pragma once

namespace lumaro::platform {

// RENAME_NOREPLACE, or link + unlink where the file system lacks it, or (FAT, exFAT: neither) a check just
// before a plain rename. False with errno set (EEXIST when `to` exists).
bool renameBytesWithoutReplacing(const char* from, const char* to);

} // namespace lumaro::platform
