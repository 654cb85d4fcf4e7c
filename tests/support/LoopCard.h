// SPDX-License-Identifier: GPL-3.0-or-later
// A real FAT memory card for tests: an image made by mkfs.vfat, attached to a loop device and mounted where
// desktops mount cards (root only; otherwise it says why not, for the test to skip).
#pragma once

#include "tests/support/TempFolder.h"

#include <QString>

namespace lumaro::testing {

// Made and attached in the constructor; mounted by mount(), which can be called again after unmount() (the
// same card re-inserted); unmounted and detached in the destructor.
class LoopCard
{
public:
    LoopCard();
    ~LoopCard();
    LoopCard(const LoopCard&) = delete;
    LoopCard& operator=(const LoopCard&) = delete;

    // The kernel's vfat where it has one; else FAT through FUSE (fusefat).
    bool mount();
    void unmount();

    bool isReady() const { return !m_mountPoint.isEmpty(); }
    const char* reason() const { return m_reason; }
    QString mountPoint() const { return m_mountPoint; }

private:
    TempFolder m_folder;
    QString m_device;
    QString m_mountPoint;
    bool m_mounted = false;
    const char* m_reason = "";
};

} // namespace lumaro::testing
