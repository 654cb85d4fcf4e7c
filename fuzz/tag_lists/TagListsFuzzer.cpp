// SPDX-License-Identifier: GPL-3.0-or-later
// Tag lists written by other programs: the user.xdg.tags value (Dolphin, Baloo, a hand edit) and a card
// folder's
// `_index/file_tags.json`, read and then changed (the read-modify-write a colour key does).
#include "fuzz/FuzzScratch.h"
#include "platform/IndexFileTagStore.h"
#include "platform/XattrTagStore.h"

using namespace lumaro;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray input = fuzz::bytesOf(data, size);
    (void)platform::XattrTagStore::parse(input);

    fuzz::FuzzScratch::write(QStringLiteral("card/_index/file_tags.json"), input);
    const QString picture =
        fuzz::FuzzScratch::write(QStringLiteral("card/IMG_0001.JPG"), QByteArrayLiteral("x"));
    platform::IndexFileTagStore store;
    const auto tags = store.tags(picture);
    QStringList changed = tags.value_or(QStringList());
    changed.append(QStringLiteral("red"));
    (void)store.setTags(picture, changed);
    (void)store.tags(picture);
    return 0;
}
