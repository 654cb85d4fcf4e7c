// SPDX-License-Identifier: GPL-3.0-or-later
// How this process's heap holds and gives back memory: the analysis's large, short-lived buffers.
#pragma once

namespace lumaro::platform {

// The C library keeps one heap ("arena") per thread that allocates concurrently, and a freed block goes back
// to the system only from the top of its heap. The analysis allocates and frees hundreds of MB per picture on
// several threads (its own workers and the network libraries' pools), so every extra heap kept its own
// high-water mark: about 90 MB more at the peak for a run on two processors, and no faster. Call once at the
// start of a program that runs the analysis, before it starts a thread; `count` heaps at most from then on.
void limitHeapArenas(int count);

// Gives the pages of freed heap blocks back to the system, wherever they lie in their heaps (a block still in
// use above them, such as a result kept for later, otherwise holds them in the process for good). For the end
// of a large piece of work, so the process shrinks back afterwards; any thread may call it.
void giveBackFreedMemory();

} // namespace lumaro::platform
