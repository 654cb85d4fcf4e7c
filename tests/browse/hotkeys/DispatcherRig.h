// SPDX-License-Identifier: GPL-3.0-or-later
// A dispatcher on real services over a temporary folder: the real Trash (gio left out), tags in extended
// attributes or the folder's tag file, an injected clock, and a window that records what it was asked to do.
#pragma once

#include "browse/hotkeys/BrowseChrome.h"
#include "browse/hotkeys/HotkeyDispatcher.h"
#include "browse/hotkeys/HotkeyManager.h"
#include "browse/state/LMRModeState.h"
#include "browse/thumbnails/ThumbnailCache.h"
#include "browse/thumbnails/ThumbnailReloadService.h"
#include "browse/trash/FileDeleteService.h"
#include "platform/IndexFileTagStore.h"
#include "platform/NotificationCenter.h"
#include "platform/XattrTagStore.h"
#include "platform/fakes/MemorySettingsStore.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace lumaro::browse {

class RecordingChrome : public BrowseChrome
{
public:
    void toggleFullScreen() override { ++fullScreenToggles; }
    void toggleFolderPanel() override { ++panelToggles; }
    void showAlert(const QString& title, const QString& message) override { alerts << title + "|" + message; }
    void showMessage(const QString& message) override { messages << message; }

    int fullScreenToggles = 0;
    int panelToggles = 0;
    QStringList alerts;
    QStringList messages;
};

inline FileDeleteService::Options withoutGio(platform::Trash* trash = nullptr)
{
    FileDeleteService::Options options;
    options.useGio = false; // the desktop's own restore is tried last; these cases are about ours
    options.trash = trash;
    return options;
}

class DispatcherRig : public ::testing::Test
{
protected:
    // `count` files named IMG_0000.<suffix> on, each holding its own name, listed with the first selected.
    void open(int count, const QString& suffix = QStringLiteral("jpg"))
    {
        QStringList names;
        for (int i = 0; i < count; ++i) {
            names << QStringLiteral("IMG_%1.%2").arg(i, 4, 10, QLatin1Char('0')).arg(suffix);
            folder.write(names.last(), names.last().toUtf8());
        }
        show(names);
    }

    // Lists `names` (files already in the folder) and selects the first.
    void show(const QStringList& names)
    {
        state.setFolderPath(folder.path(), folder.path(), folder.path());
        state.setImageFiles(names);
        state.select(0);
        original = names;
    }

    // Performs `action` through `on` and waits until the file work it started is done.
    void press(HotkeyAction action, HotkeyDispatcher* on = nullptr)
    {
        HotkeyDispatcher& target = on ? *on : dispatcher;
        target.perform(action);
        ASSERT_TRUE(testing::waitUntil([&] { return !target.isBusy(); }));
    }

    DispatcherServices services()
    {
        DispatcherServices services{&service, &tags, &cache, &reload};
        services.clock = [this] { return now; };
        return services;
    }

    testing::TempFolder folder;
    QStringList original;
    platform::MemorySettingsStore settings;
    HotkeyManager manager{settings};
    ThumbnailCache cache;
    LMRModeState state{&cache};
    FileDeleteService service{withoutGio()};
    platform::IndexFileTagStore cardTags;
    platform::XattrTagStore tags{&cardTags};
    platform::NotificationCenter center;
    double now = 1000;
    ThumbnailReloadService reload{[this] { return now; }, &center};
    RecordingChrome chrome;
    HotkeyDispatcher dispatcher{state, manager, &chrome, services()};
};

} // namespace lumaro::browse
