// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/hotkeys/ViewerHotkeys.h"

#include "browse/hotkeys/HistogramHotkey.h"
#include "browse/hotkeys/HotkeyManager.h"
#include "platform/KeyNames.h"
#include "platform/QSettingsStore.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::browse {

ViewerHotkeys& ViewerHotkeys::shared()
{
    static ViewerHotkeys instance(platform::QSettingsStore::shared(), HotkeyManager::shared());
    return instance;
}

ViewerHotkeys::ViewerHotkeys(platform::SettingsStore& store, const HotkeyManager& actions, QObject* parent)
    : QObject(parent), m_store(store), m_actions(actions), m_hotkeys(defaultHotkeys())
{
    const auto stored = m_store.bytes(settingsKey);
    if (!stored)
        return;
    const QJsonObject object = QJsonDocument::fromJson(*stored).object();
    for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
        const auto action = viewerActionFromRawValue(it.key());
        const auto hotkey = Hotkey::fromJson(it.value().toObject());
        if (action && hotkey)
            m_hotkeys.insert(*action, *hotkey);
    }
}

QMap<ViewerAction, Hotkey> ViewerHotkeys::defaultHotkeys()
{
    // Alt with the digits: the bare digits are the six colours. P and X as in Lightroom and darktable.
    QMap<ViewerAction, Hotkey> keys;
    for (ViewerAction action : allViewerActions()) {
        if (const auto stars = starsOf(action))
            keys.insert(action, Hotkey(QString::number(*stars), Qt::AltModifier));
    }
    keys.insert(ViewerAction::togglePick, Hotkey(QStringLiteral("p")));
    keys.insert(ViewerAction::toggleReject, Hotkey(QStringLiteral("x")));
    keys.insert(ViewerAction::toggleLoupe, Hotkey(QStringLiteral("z")));
    keys.insert(ViewerAction::toggleInfo, Hotkey(QStringLiteral("i")));
    keys.insert(ViewerAction::showHelp, Hotkey(QStringLiteral("?"), Qt::ShiftModifier));
    // The filter keys are the Shift twins of what they filter on: P picks, X rejects, S stars, C colours.
    keys.insert(ViewerAction::filterPicks, Hotkey(QStringLiteral("p"), Qt::ShiftModifier));
    keys.insert(ViewerAction::filterRejects, Hotkey(QStringLiteral("x"), Qt::ShiftModifier));
    keys.insert(ViewerAction::filterStars, Hotkey(QStringLiteral("s"), Qt::ShiftModifier));
    keys.insert(ViewerAction::filterColour, Hotkey(QStringLiteral("c"), Qt::ShiftModifier));
    keys.insert(ViewerAction::clearFilter, Hotkey(QStringLiteral("a"), Qt::ShiftModifier));
    keys.insert(ViewerAction::toggleCompare, Hotkey(QStringLiteral("c")));
    return keys;
}

std::optional<ViewerAction> ViewerHotkeys::actionForKey(int qtKey, Qt::KeyboardModifiers modifiers) const
{
    const auto name = platform::keyName(qtKey);
    if (!name)
        return std::nullopt;
    const Hotkey pressed(*name, modifiers);
    for (auto it = m_hotkeys.constBegin(); it != m_hotkeys.constEnd(); ++it) {
        if (it.value() == pressed)
            return it.key();
    }
    return std::nullopt;
}

std::optional<QString> ViewerHotkeys::set(ViewerAction action, const Hotkey& hotkey)
{
    if (const auto refused = clash(action, hotkey))
        return refused;
    m_hotkeys.insert(action, hotkey);
    save();
    Q_EMIT hotkeysChanged();
    return std::nullopt;
}

std::optional<QString> ViewerHotkeys::clash(ViewerAction action, const Hotkey& hotkey) const
{
    if (const auto taken = m_actions.action(hotkey))
        return QStringLiteral("与“%1”冲突").arg(displayName(*taken));
    if (HistogramHotkey::shared().hotkey() == hotkey)
        return QStringLiteral("与“直方图”冲突");
    for (auto it = m_hotkeys.constBegin(); it != m_hotkeys.constEnd(); ++it) {
        if (it.key() != action && it.value() == hotkey)
            return QStringLiteral("与“%1”冲突").arg(displayName(it.key()));
    }
    return std::nullopt;
}

void ViewerHotkeys::resetToDefaults()
{
    m_hotkeys = defaultHotkeys();
    save();
    Q_EMIT hotkeysChanged();
}

void ViewerHotkeys::save()
{
    QJsonObject object;
    for (auto it = m_hotkeys.constBegin(); it != m_hotkeys.constEnd(); ++it)
        object.insert(rawValue(it.key()), it.value().toJson());
    m_store.setBytes(settingsKey, QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace lumaro::browse
