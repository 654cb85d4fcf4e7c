// SPDX-License-Identifier: GPL-3.0-or-later
// The key that shows or hides the tone histogram over the preview, kept apart from the seventeen culling
// keys.
#pragma once

#include "browse/hotkeys/Hotkey.h"

#include <QString>

#include <optional>

namespace lumaro::platform {
class SettingsStore;
}

namespace lumaro::browse {

class HotkeyManager;

// Main thread. Stored as a hotkey JSON object under its own key, "LMR_HistogramHotkey", so the culling
// bindings ("HotkeyManager_Hotkeys") keep exactly their seventeen actions. Default: H. A key one of the
// seventeen actions is bound to is refused; should an action be bound to this key later, the action wins.
class HistogramHotkey
{
public:
    static inline const QString settingsKey = QStringLiteral("LMR_HistogramHotkey");

    // The one binding of the process, over the user's settings and the shared culling bindings.
    static HistogramHotkey& shared();

    HistogramHotkey(platform::SettingsStore& store, const HotkeyManager& actions);

    const Hotkey& hotkey() const { return m_hotkey; }
    bool matches(int qtKey, Qt::KeyboardModifiers modifiers) const;
    // Stores `hotkey`; nullopt on success, else why it was refused.
    std::optional<QString> set(const Hotkey& hotkey);

private:
    platform::SettingsStore& m_store;
    const HotkeyManager& m_actions;
    Hotkey m_hotkey;
};

} // namespace lumaro::browse
