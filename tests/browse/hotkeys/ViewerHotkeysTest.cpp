// SPDX-License-Identifier: GPL-3.0-or-later
// The viewer keys live under their own settings key and never take a key of the seventeen actions.
#include "browse/hotkeys/ViewerHotkeys.h"
#include "browse/hotkeys/HistogramHotkey.h"
#include "browse/hotkeys/HotkeyManager.h"
#include "platform/fakes/MemorySettingsStore.h"

#include <gtest/gtest.h>

namespace lumaro::browse {
namespace {

TEST(ViewerHotkeys, DefaultsClashWithNoCullingKeyAndEachHasItsOwn)
{
    QList<Hotkey> seen{HistogramHotkey::shared().hotkey()};
    for (const Hotkey& culling : HotkeyManager::defaultHotkeys())
        seen << culling;
    for (const Hotkey& viewer : ViewerHotkeys::defaultHotkeys()) {
        EXPECT_FALSE(seen.contains(viewer)) << viewer.displayText().toStdString();
        seen << viewer;
    }
    EXPECT_EQ(ViewerHotkeys::defaultHotkeys().size(), allViewerActions().size());
}

TEST(ViewerHotkeys, ABindingIsStoredApartAndAClashIsRefused)
{
    platform::MemorySettingsStore store;
    HotkeyManager actions(store);
    const auto before = store.bytes(HotkeyManager::hotkeysKey);
    ViewerHotkeys keys(store, actions);
    EXPECT_EQ(keys.actionForKey(Qt::Key_3, Qt::AltModifier), ViewerAction::rate3);
    EXPECT_EQ(keys.actionForKey(Qt::Key_Question, Qt::ShiftModifier), ViewerAction::showHelp);
    EXPECT_FALSE(keys.actionForKey(Qt::Key_3, Qt::NoModifier)); // the orange key

    EXPECT_TRUE(keys.set(ViewerAction::togglePick, actions.hotkey(HotkeyAction::deleteFile)));
    EXPECT_TRUE(keys.set(ViewerAction::togglePick, keys.hotkey(ViewerAction::toggleReject)));
    EXPECT_FALSE(store.contains(ViewerHotkeys::settingsKey));

    ASSERT_FALSE(keys.set(ViewerAction::togglePick, Hotkey(QStringLiteral("y"))));
    EXPECT_EQ(store.bytes(HotkeyManager::hotkeysKey), before);
    const ViewerHotkeys reread(store, actions);
    EXPECT_EQ(reread.actionForKey(Qt::Key_Y, Qt::NoModifier), ViewerAction::togglePick);
    EXPECT_FALSE(reread.actionForKey(Qt::Key_P, Qt::NoModifier));
}

} // namespace
} // namespace lumaro::browse
