// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/hotkeys/HistogramHotkey.h"

#include "browse/hotkeys/HotkeyManager.h"
#include "platform/KeyNames.h"
#include "platform/QSettingsStore.h"
#include "platform/SettingsStore.h"

#include <QJsonDocument>

namespace lumaro::browse {

HistogramHotkey& HistogramHotkey::shared()
{
    static HistogramHotkey instance(platform::QSettingsStore::shared(), HotkeyManager::shared());
    return instance;
}

HistogramHotkey::HistogramHotkey(platform::SettingsStore& store, const HotkeyManager& actions)
    : m_store(store), m_actions(actions), m_hotkey(QStringLiteral("h"))
{
    const auto stored = m_store.bytes(settingsKey);
    if (!stored)
        return;
    if (const auto hotkey = Hotkey::fromJson(QJsonDocument::fromJson(*stored).object()))
        m_hotkey = *hotkey;
}

bool HistogramHotkey::matches(int qtKey, Qt::KeyboardModifiers modifiers) const
{
    const auto name = platform::keyName(qtKey);
    return name && Hotkey(*name, modifiers) == m_hotkey;
}

std::optional<QString> HistogramHotkey::set(const Hotkey& hotkey)
{
    if (const auto action = m_actions.action(hotkey))
        return QStringLiteral("%1 已用于「%2」").arg(hotkey.displayText(), displayName(*action));
    m_hotkey = hotkey;
    m_store.setBytes(settingsKey, QJsonDocument(hotkey.toJson()).toJson(QJsonDocument::Compact));
    return std::nullopt;
}

} // namespace lumaro::browse
