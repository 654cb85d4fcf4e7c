// SPDX-License-Identifier: GPL-3.0-or-later
// The key bindings of the seventeen actions: defaults, lookup by pressed key, and their place in the settings.
#pragma once

#include "browse/hotkeys/Hotkey.h"
#include "browse/hotkeys/HotkeyAction.h"

#include <QMap>
#include <QObject>

#include <optional>

namespace lumaro::platform {
class SettingsStore;
}

namespace lumaro::browse {

// Main thread. Bindings are read once, at construction, from "HotkeyManager_Hotkeys" (a JSON object from raw
// action value to hotkey) and written back at every change. Bindings stored by older versions (an array of
// alternating action and hotkey, modifiers as one number) are migrated and stored again in the current form;
// data that cannot be decoded gives the defaults; an action missing from the stored map gets its default.
// When two actions share a key, the one earlier in the settings order wins.
class HotkeyManager : public QObject
{
    Q_OBJECT
public:
    static inline const QString hotkeysKey = QStringLiteral("HotkeyManager_Hotkeys");

    // The one manager of the process, over the user's settings.
    static HotkeyManager& shared();
    explicit HotkeyManager(platform::SettingsStore& userDefaults, QObject* parent = nullptr);

    static QMap<HotkeyAction, Hotkey> defaultHotkeys();

    const QMap<HotkeyAction, Hotkey>& hotkeys() const { return m_hotkeys; }
    Hotkey hotkey(HotkeyAction action) const;
    // Stores at once.
    void setHotkey(HotkeyAction action, const Hotkey& hotkey);
    void resetToDefaults();

    std::optional<HotkeyAction> action(const Hotkey& pressed) const;
    // A Qt key event's key code and modifiers, named the way bindings are (platform::keyName).
    std::optional<HotkeyAction> actionForKey(int qtKey, Qt::KeyboardModifiers modifiers) const;

Q_SIGNALS:
    void hotkeysChanged();

private:
    void load();
    void save();

    platform::SettingsStore& m_userDefaults;
    QMap<HotkeyAction, Hotkey> m_hotkeys;
};

} // namespace lumaro::browse
