// SPDX-License-Identifier: GPL-3.0-or-later
// Loses a block on purpose: LeakSanitizer must report it (and fail the run) despite lsan.supp.
#include <cstdio>
#include <cstdlib>

namespace {

// The block is made and dropped in a frame of its own, and that part of the stack is then written over:
// LeakSanitizer scans stacks and registers conservatively, and a copy of the pointer left in a dead slot
// once kept the block "reachable" and the test red.
[[gnu::noinline]] void loseABlock()
{
    static void* volatile kept = nullptr;
    kept = std::malloc(4096);
    kept = nullptr;
}

[[gnu::noinline]] void overwriteDeadStack()
{
    volatile char scratch[16384];
    for (volatile char& byte : scratch)
        byte = 0;
}

} // namespace

int main()
{
    loseABlock();
    overwriteDeadStack();
    std::puts("leaked 4096 bytes");
    return 0;
}
