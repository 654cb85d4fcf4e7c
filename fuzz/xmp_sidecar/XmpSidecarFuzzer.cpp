// SPDX-License-Identifier: GPL-3.0-or-later
// An XMP sidecar as darktable, digiKam, Lightroom or a damaged card left it: read, then a rating written into
// it. Whenever the write says it succeeded, reading back must give the rating written and keep the colours
// the sidecar had: a sidecar we could not understand is never half-rewritten.
#include "fuzz/FuzzScratch.h"
#include "platform/metadata/XmpSidecar.h"

#include <cstdlib>

using namespace lumaro;
using platform::PickFlag;
using platform::XmpSidecar;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    fuzz::FuzzScratch::clear();
    const QString picture =
        fuzz::FuzzScratch::write(QStringLiteral("shoot/IMG_0001.JPG"), QByteArrayLiteral("x"));
    fuzz::FuzzScratch::write(QStringLiteral("shoot/IMG_0001.JPG.xmp"), fuzz::bytesOf(data, size));

    const std::optional<platform::PictureMarks> before = XmpSidecar::read(picture);
    if (!XmpSidecar::writeRating(picture, 3, PickFlag::picked, platform::SidecarNaming::pictureName))
        return 0;
    const std::optional<platform::PictureMarks> after = XmpSidecar::read(picture);
    if (!after || after->stars != 3 || after->flag != PickFlag::picked ||
        (before && after->colours != before->colours))
        std::abort();
    return 0;
}
