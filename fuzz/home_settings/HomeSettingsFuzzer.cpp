// SPDX-License-Identifier: GPL-3.0-or-later
// The home page's stored settings as another version or a hand edit may leave them: the recent folders (up to
// the first newline) and the chosen place (the rest). The folders shown are absolute, each once, and stay so
// when one is opened again; a place read back is in range and survives being stored again unchanged.
#include "fuzz/FuzzScratch.h"
#include "home/HomeSettings.h"
#include "home/RecentFolders.h"
#include "platform/fakes/MemorySettingsStore.h"

#include <QDir>

#include <cmath>

using namespace lumaro;

namespace {

bool isCleanList(const QStringList& folders)
{
    if (folders.size() > home::RecentFolders::maxFolders)
        return false;
    for (qsizetype i = 0; i < folders.size(); ++i) {
        if (!QDir::isAbsolutePath(folders.at(i)) || QDir::cleanPath(folders.at(i)) != folders.at(i) ||
            folders.indexOf(folders.at(i)) != i)
            return false;
    }
    return true;
}

void checkRecentFolders(const QByteArray& stored)
{
    platform::MemorySettingsStore store;
    store.setBytes(home::RecentFolders::settingsKey, stored);
    home::RecentFolders recent(store);
    const QStringList before = recent.folders();
    fuzz::require(isCleanList(before), "recent folders are absolute, clean, each once and bounded");
    const QString opened = before.isEmpty() ? QStringLiteral("/photos/new") : before.constLast();
    recent.remember(opened);
    const QStringList after = recent.folders();
    fuzz::require(isCleanList(after) && after.constFirst() == opened, "the folder opened comes first");
    QStringList expected = before;
    expected.removeAll(opened);
    expected.prepend(opened);
    fuzz::require(after == expected.mid(0, home::RecentFolders::maxFolders), "the others keep their order");
}

void checkPlace(const QByteArray& stored)
{
    platform::MemorySettingsStore store;
    store.setBytes(home::HomeSettings::placeKey, stored);
    home::HomeSettings settings(store);
    const std::optional<home::Place> place = settings.place();
    if (!place)
        return;
    fuzz::require(std::abs(place->position.latitude) <= 90 && std::abs(place->position.longitude) <= 180,
                  "a place read back lies on the globe");
    (void)place->zone();
    settings.setPlace(*place);
    fuzz::require(settings.place() == place, "a place stored again reads back unchanged");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes = fuzz::bytesOf(data, size);
    const qsizetype newline = bytes.indexOf('\n');
    checkRecentFolders(bytes.left(newline < 0 ? bytes.size() : newline));
    checkPlace(newline < 0 ? QByteArray() : bytes.mid(newline + 1));
    return 0;
}
