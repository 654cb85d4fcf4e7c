// SPDX-License-Identifier: GPL-3.0-or-later
// Loses a block on purpose: LeakSanitizer must report it (and fail the run) despite lsan.supp.
#include <cstdio>
#include <cstdlib>

int main()
{
    static void* volatile kept = nullptr;
    kept = std::malloc(4096);
    kept = nullptr; // the only pointer is gone: a leak in our own code
    std::puts("leaked 4096 bytes");
    return 0;
}
