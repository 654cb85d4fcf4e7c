// SPDX-License-Identifier: GPL-3.0-or-later
// The window's memory of each folder ("MainWindow_FolderViews": window geometry, browsing mode, selected
// picture) as another version, a hand edit or a clock set wrong may leave it. Whatever was stored, the folder
// the photographer leaves now is remembered exactly as left, and the memory stays bounded.
#include "app/FolderViewMemory.h"
#include "fuzz/FuzzScratch.h"
#include "platform/fakes/MemorySettingsStore.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace lumaro;
using app::FolderViewMemory;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    platform::MemorySettingsStore store;
    store.setBytes(FolderViewMemory::settingsKey, fuzz::bytesOf(data, size));
    FolderViewMemory memory(store);

    const QJsonObject stored = QJsonDocument::fromJson(fuzz::bytesOf(data, size)).object();
    for (const QString& folder : stored.keys().mid(0, 4))
        (void)memory.recall(folder);

    const QString left = QStringLiteral("/home/u/Pictures/roll 01/照片");
    const FolderViewMemory::View view{QByteArray("\x01\xd9\xd0\xcb\x00\x03", 6), 2,
                                      QStringLiteral("IMG 0001.JPG")};
    memory.remember(left, view);
    const auto recalled = memory.recall(left);
    fuzz::require(recalled && recalled->geometry == view.geometry && recalled->mode == view.mode &&
                      recalled->selectedFile == view.selectedFile,
                  "the folder left is remembered as left");
    const QJsonObject after =
        QJsonDocument::fromJson(store.bytes(FolderViewMemory::settingsKey).value_or("")).object();
    fuzz::require(after.size() <= FolderViewMemory::maxFolders, "the memory stays bounded");
    return 0;
}
