// SPDX-License-Identifier: GPL-3.0-or-later
// A HEIC file decoded as the grid (embedded thumbnail allowed) and the preview (full image) decode it.
#include "fuzz/FuzzScratch.h"
#include "platform/picture/HeifDecoder.h"

using namespace lumaro;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString path = fuzz::FuzzScratch::write(QStringLiteral("IMG_0001.HEIC"), fuzz::bytesOf(data, size));
    (void)platform::HeifDecoder::decode(path, 64, true);
    (void)platform::HeifDecoder::decode(path, 64, false);
    return 0;
}
