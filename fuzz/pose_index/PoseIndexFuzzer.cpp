// SPDX-License-Identifier: GPL-3.0-or-later
// A pose run in `_index/` as another program or a damaged disk may leave it, read back. Whatever the file says,
// no picture name that could lead out of the folder comes back.
#include "fuzz/FuzzScratch.h"
#include "pose/PoseIndexFile.h"

#include <cstdlib>

using namespace lumaro;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString path = fuzz::FuzzScratch::write(QStringLiteral("shoot/_index/pose_index_20260101_000000_1.json"),
                                                  fuzz::bytesOf(data, size));
    const std::optional<pose::PoseIndexData> read = pose::PoseIndexFile::read(path);
    if (!read)
        return 0;
    for (const pose::PoseIndexPicture& picture : read->pictures) {
        if (picture.fileName.contains(QLatin1Char('/')) || picture.fileName == QLatin1String(".") ||
            picture.fileName == QLatin1String(".."))
            std::abort();
    }
    return 0;
}
