// SPDX-License-Identifier: GPL-3.0-or-later
// A .trashinfo record as any desktop (or a damaged card) may have written it, read by the restore chain both
// as a home-trash record and as a per-volume one (relative Path).
#include "fuzz/FuzzScratch.h"
#include "platform/TrashRestorer.h"

using namespace lumaro;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString trash = fuzz::FuzzScratch::path(QStringLiteral("Trash"));
    const QString info = fuzz::FuzzScratch::write(QStringLiteral("Trash/info/IMG_0001.JPG.trashinfo"),
                                                  fuzz::bytesOf(data, size));
    fuzz::FuzzScratch::write(QStringLiteral("Trash/files/IMG_0001.JPG"), QByteArrayLiteral("x"));

    (void)platform::TrashRestorer::readInfo(info, trash);
    (void)platform::TrashRestorer::readInfo(info, QString());
    (void)platform::TrashRestorer::entryFor(trash + QStringLiteral("/files/IMG_0001.JPG"));
    return 0;
}
