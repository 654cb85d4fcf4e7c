// SPDX-License-Identifier: GPL-3.0-or-later
// Any picture file under any picture name: the first byte picks the name's extension, the rest is the file.
// Runs the display decode (every route, content not matching its extension included) and the metadata readers
// that `card`, `rotate` and the grid use.
#include "fuzz/FuzzScratch.h"
#include "platform/ExifOrientation.h"
#include "platform/ImageMetadata.h"
#include "platform/picture/PictureReader.h"

#include <array>

using namespace lumaro;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    static const std::array<const char*, 8> extensions{"jpg", "png",  "tif",  "bmp",
                                                       "gif", "webp", "heic", "cr2"};
    const QString name =
        QStringLiteral("IMG_0001.") + QLatin1String(extensions.at(data[0] % extensions.size()));
    const QString path = fuzz::FuzzScratch::write(name, fuzz::bytesOf(data + 1, size - 1));
    (void)platform::PictureReader::read({path, 64, true, 90});
    (void)platform::PictureReader::read({path, 64, false, 0});
    (void)platform::ExifOrientation::read(path);
    (void)platform::ImageMetadata::read(path);
    return 0;
}
