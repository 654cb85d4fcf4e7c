// SPDX-License-Identifier: GPL-3.0-or-later
// One key binding: a key name and the modifier keys held with it, stored as {"key": …, "modifiers": […]}.
#pragma once

#include <QJsonObject>
#include <QString>
#include <Qt>

#include <optional>

namespace lumaro::browse {

// `key` is the key's name as platform::keyName gives it: a lower-case letter or digit for character keys,
// "leftArrow", "space", "f5", … for the others. Only Shift, Control, Alt and Meta take part in a binding;
// the keypad flag never does (a keypad digit is the same key as the digit).
struct Hotkey
{
    QString key;
    Qt::KeyboardModifiers modifiers;

    Hotkey() = default;
    Hotkey(QString keyName, Qt::KeyboardModifiers mods = Qt::NoModifier);

    // Shift, Control, Alt and Meta only.
    static Qt::KeyboardModifiers relevantModifiers(Qt::KeyboardModifiers mods);

    // {"key": "d", "modifiers": ["control", "shift"]}; modifier names in the fixed order control, alt, shift, meta.
    QJsonObject toJson() const;
    // nullopt unless the object has a non-empty string "key" and an array "modifiers" of known names.
    static std::optional<Hotkey> fromJson(const QJsonObject& object);
    // "Ctrl+Shift+D", for the settings page.
    QString displayText() const;

    friend bool operator==(const Hotkey& a, const Hotkey& b)
    {
        return a.key == b.key && relevantModifiers(a.modifiers) == relevantModifiers(b.modifiers);
    }
};

} // namespace lumaro::browse
