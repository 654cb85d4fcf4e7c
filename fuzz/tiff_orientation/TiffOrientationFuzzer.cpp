// SPDX-License-Identifier: GPL-3.0-or-later
// A TIFF-structured file (Canon CR2) whose orientation tag is read and patched in place, as `rotate` does.
#include "fuzz/FuzzScratch.h"
#include "platform/TiffOrientationPatch.h"

using namespace lumaro;

namespace {

int turnLeft(int orientation)
{
    return orientation == 8 ? 1 : orientation + 1;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString path = fuzz::FuzzScratch::write(QStringLiteral("IMG_0001.CR2"), fuzz::bytesOf(data, size));
    (void)platform::TiffOrientationPatch::read(path);
    (void)platform::TiffOrientationPatch::apply(path, turnLeft, nullptr);
    return 0;
}
