// SPDX-License-Identifier: GPL-3.0-or-later
// The bindings of the viewer keys (stars, pick, reject, loupe, shooting data, help), kept apart from the
// seventeen culling keys.
#pragma once

#include "browse/hotkeys/Hotkey.h"
#include "browse/hotkeys/ViewerAction.h"

#include <QMap>
#include <QObject>

#include <optional>

namespace lumaro::platform {
class SettingsStore;
}

namespace lumaro::browse {

class HotkeyManager;

// Main thread. Stored as a JSON object from raw action value to hotkey under their own key,
// "LMR_ViewerHotkeys", so "HotkeyManager_Hotkeys" keeps exactly its seventeen actions. Defaults: Alt+0 …
// Alt+5, P, X, Z, I, ? (Shift+/), the filters Shift+P, Shift+S, Shift+C, Shift+X, Shift+A (clear) and C
// (compare). A key that one of the seventeen actions, the histogram or another viewer
// action already has is refused; should a culling action be bound to one of these keys later, the culling
// action wins (it is looked up first). Stored data that cannot be read gives the defaults.
class ViewerHotkeys : public QObject
{
    Q_OBJECT
public:
    static inline const QString settingsKey = QStringLiteral("LMR_ViewerHotkeys");

    static ViewerHotkeys& shared();
    ViewerHotkeys(platform::SettingsStore& store, const HotkeyManager& actions, QObject* parent = nullptr);

    static QMap<ViewerAction, Hotkey> defaultHotkeys();
    Hotkey hotkey(ViewerAction action) const { return m_hotkeys.value(action); }
    std::optional<ViewerAction> actionForKey(int qtKey, Qt::KeyboardModifiers modifiers) const;
    // Why `hotkey` cannot be `action`'s (in the settings' words), or nullopt.
    std::optional<QString> clash(ViewerAction action, const Hotkey& hotkey) const;
    // Stores `hotkey`; nullopt on success, else why it was refused (in the settings' words).
    std::optional<QString> set(ViewerAction action, const Hotkey& hotkey);
    void resetToDefaults();

Q_SIGNALS:
    void hotkeysChanged();

private:
    void save();

    platform::SettingsStore& m_store;
    const HotkeyManager& m_actions;
    QMap<ViewerAction, Hotkey> m_hotkeys;
};

} // namespace lumaro::browse
