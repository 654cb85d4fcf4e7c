// SPDX-License-Identifier: GPL-3.0-or-later
// A RAW file's embedded preview (libraw, exiv2's preview list as the fallback), read as the grid reads it.
#include "fuzz/FuzzScratch.h"
#include "platform/picture/EmbeddedPreview.h"
#include "platform/picture/PictureReader.h"

using namespace lumaro;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString path = fuzz::FuzzScratch::write(QStringLiteral("IMG_0001.CR2"), fuzz::bytesOf(data, size));
    (void)platform::EmbeddedPreview::rawPreview(path);
    (void)platform::PictureReader::read({path, 64, true, 0});
    return 0;
}
