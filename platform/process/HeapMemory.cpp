// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/process/HeapMemory.h"

#include <malloc.h>

namespace lumaro::platform {

void limitHeapArenas(int count)
{
    ::mallopt(M_ARENA_MAX, count);
}

void giveBackFreedMemory()
{
    ::malloc_trim(0);
}

} // namespace lumaro::platform
