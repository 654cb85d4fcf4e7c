// SPDX-License-Identifier: GPL-3.0-or-later
// The histogram key lives under its own settings key and never takes a key of the seventeen actions.
#include "browse/hotkeys/HistogramHotkey.h"
#include "browse/hotkeys/HotkeyManager.h"
#include "platform/fakes/MemorySettingsStore.h"

#include <gtest/gtest.h>

namespace lumaro::browse {
namespace {

TEST(HistogramHotkey, DefaultsToHAndRefusesAnActionsKey)
{
    platform::MemorySettingsStore store;
    HotkeyManager actions(store);
    HistogramHotkey histogram(store, actions);
    EXPECT_TRUE(histogram.matches(Qt::Key_H, Qt::NoModifier));
    EXPECT_FALSE(histogram.matches(Qt::Key_H, Qt::ControlModifier));

    const auto refused = histogram.set(actions.hotkey(HotkeyAction::deleteFile));
    ASSERT_TRUE(refused);
    EXPECT_TRUE(histogram.matches(Qt::Key_H, Qt::NoModifier));
    EXPECT_FALSE(store.contains(HistogramHotkey::settingsKey));
}

TEST(HistogramHotkey, ABindingIsStoredApartAndReadBack)
{
    platform::MemorySettingsStore store;
    HotkeyManager actions(store);
    const auto before = store.bytes(HotkeyManager::hotkeysKey);
    ASSERT_FALSE(HistogramHotkey(store, actions).set(Hotkey(QStringLiteral("i"), Qt::ShiftModifier)));
    EXPECT_EQ(store.bytes(HotkeyManager::hotkeysKey), before);
    const HistogramHotkey reread(store, actions);
    EXPECT_TRUE(reread.matches(Qt::Key_I, Qt::ShiftModifier));
    EXPECT_FALSE(reread.matches(Qt::Key_H, Qt::NoModifier));
}

} // namespace
} // namespace lumaro::browse
