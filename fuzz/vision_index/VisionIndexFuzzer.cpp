// SPDX-License-Identifier: GPL-3.0-or-later
// A folder's `_index/` as another program or a damaged disk may leave it: two index runs and a summary, read
// back by every reader of the folder (the app's reader, grouping's mark loader, pose's tags).
#include "fuzz/FuzzScratch.h"
#include "pose/PoseVisionTags.h"
#include "vision/VisionIndexFile.h"
#include "vision/VisionIndexReader.h"
#include "vision/VisionMarkLoader.h"

using namespace lumaro;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // A NUL splits the input into an older and a newer run.
    const QByteArray input = fuzz::bytesOf(data, size);
    const qsizetype split = input.indexOf('\0');
    const QByteArray first = split < 0 ? input : input.left(split);
    const QByteArray second = split < 0 ? QByteArray() : input.mid(split + 1);

    fuzz::FuzzScratch::clear();
    const QString folder = fuzz::FuzzScratch::path(QStringLiteral("shoot"));
    fuzz::FuzzScratch::write(QStringLiteral("shoot/_index/vision_index_20240101_000000_a.json"), first);
    fuzz::FuzzScratch::write(QStringLiteral("shoot/_index/vision_summary_20240101_000000_a.json"), first);
    if (split >= 0)
        fuzz::FuzzScratch::write(QStringLiteral("shoot/_index/vision_index_20240102_000000_b.json"), second);
    fuzz::FuzzScratch::write(QStringLiteral("shoot/IMG_0001.JPG"), QByteArrayLiteral("x"));

    (void)vision::VisionIndexFile::read(folder +
                                        QStringLiteral("/_index/vision_index_20240101_000000_a.json"));
    (void)vision::VisionIndexReader::latestResults(folder);
    (void)vision::VisionIndexReader::resultFor(folder, QStringLiteral("IMG_0001.JPG"));
    (void)vision::VisionMarkLoader::load(folder, QStringLiteral("FUZZ"));
    (void)pose::PoseVisionTags::forPicture(folder + QStringLiteral("/IMG_0001.JPG"));
    return 0;
}
