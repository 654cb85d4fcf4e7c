// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/hotkeys/Hotkey.h"

#include <QJsonArray>
#include <QStringList>

#include <array>
#include <utility>

namespace lumaro::browse {

namespace {

constexpr std::array<std::pair<Qt::KeyboardModifier, const char*>, 4> kModifierNames{{
    {Qt::ControlModifier, "control"},
    {Qt::AltModifier, "alt"},
    {Qt::ShiftModifier, "shift"},
    {Qt::MetaModifier, "meta"},
}};

} // namespace

Hotkey::Hotkey(QString keyName, Qt::KeyboardModifiers mods)
    : key(std::move(keyName))
    , modifiers(relevantModifiers(mods))
{
}

Qt::KeyboardModifiers Hotkey::relevantModifiers(Qt::KeyboardModifiers mods)
{
    return mods & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
}

QJsonObject Hotkey::toJson() const
{
    QJsonArray names;
    for (const auto& [flag, name] : kModifierNames) {
        if (modifiers.testFlag(flag))
            names.append(QString::fromLatin1(name));
    }
    return QJsonObject{{QStringLiteral("key"), key}, {QStringLiteral("modifiers"), names}};
}

std::optional<Hotkey> Hotkey::fromJson(const QJsonObject& object)
{
    const QJsonValue key = object.value(QStringLiteral("key"));
    const QJsonValue modifiers = object.value(QStringLiteral("modifiers"));
    if (!key.isString() || key.toString().isEmpty() || !modifiers.isArray())
        return std::nullopt;
    Qt::KeyboardModifiers flags;
    for (const QJsonValue& value : modifiers.toArray()) {
        bool known = false;
        for (const auto& [flag, name] : kModifierNames) {
            if (value.toString() == QLatin1String(name)) {
                flags |= flag;
                known = true;
            }
        }
        if (!known)
            return std::nullopt;
    }
    return Hotkey(key.toString(), flags);
}

QString Hotkey::displayText() const
{
    QStringList parts;
    if (modifiers.testFlag(Qt::ControlModifier))
        parts << QStringLiteral("Ctrl");
    if (modifiers.testFlag(Qt::AltModifier))
        parts << QStringLiteral("Alt");
    if (modifiers.testFlag(Qt::ShiftModifier))
        parts << QStringLiteral("Shift");
    if (modifiers.testFlag(Qt::MetaModifier))
        parts << QStringLiteral("Meta");
    parts << (key.size() == 1 ? key.toUpper() : key);
    return parts.join(QLatin1Char('+'));
}

} // namespace lumaro::browse
