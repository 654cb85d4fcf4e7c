// SPDX-License-Identifier: GPL-3.0-or-later
// The one-time set-up every exiv2 user in the process shares.
#pragma once

namespace lumaro::platform {

// Call before any exiv2 use; cheap after the first call, safe from any thread. Mutes exiv2's own warnings
// (callers report failures in their own words), sets up the XMP toolkit with a lock (it keeps global state
// that pool threads share, and only the first set-up of a process counts, so there must be exactly one), and
// turns on CR3/HEIF support where the build has it, and registers darktable's XMP namespace.
void prepareExiv2();

} // namespace lumaro::platform
