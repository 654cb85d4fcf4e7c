// SPDX-License-Identifier: GPL-3.0-or-later
// The test process's own resident memory, for tests of what a piece of work keeps after it.
#pragma once

#include <QtGlobal>

namespace lumaro::testing {

// VmRSS of this process in bytes; 0 when the kernel does not say.
qint64 residentBytes();

// The address sanitizer's allocator keeps freed blocks in a quarantine of its own, so what a process gives
// back to the system is not measured there.
constexpr bool kHeapIsSanitized =
#if defined(__SANITIZE_ADDRESS__)
    true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
    true;
#else
    false;
#endif
#else
    false;
#endif

} // namespace lumaro::testing
