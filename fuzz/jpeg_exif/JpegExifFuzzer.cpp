// SPDX-License-Identifier: GPL-3.0-or-later
// JPEG data in memory, as the grid reads it: the header size, the DCT-scaled decode and the EXIF summary
// (orientation and the IFD1 thumbnail, which is then decoded too).
#include "fuzz/FuzzScratch.h"
#include "platform/picture/EmbeddedPreview.h"
#include "platform/picture/JpegDecoder.h"

using namespace lumaro;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray input = fuzz::bytesOf(data, size);
    (void)platform::JpegDecoder::size(input);
    (void)platform::JpegDecoder::decode(input, 64);
    const platform::ExifSummary exif = platform::EmbeddedPreview::exifOf(input);
    if (!exif.thumbnail.isEmpty())
        (void)platform::JpegDecoder::decode(exif.thumbnail, 32);
    return 0;
}
