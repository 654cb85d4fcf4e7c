// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/hotkeys/HotkeyManager.h"

#include "platform/KeyNames.h"
#include "platform/Log.h"
#include "platform/QSettingsStore.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::browse {

using platform::Log;

namespace {

const QString kTag = QStringLiteral("HotkeyManager");

// Modifier bits of the older encoding, which stored the platform's modifier mask as one number.
constexpr qint64 kOldShift = 1 << 17;
constexpr qint64 kOldControl = 1 << 18;
constexpr qint64 kOldOption = 1 << 19;
constexpr qint64 kOldCommand = 1 << 20;

std::optional<Hotkey> hotkeyFromOldEncoding(const QJsonObject& object)
{
    const QJsonValue key = object.value(QStringLiteral("key"));
    const QJsonValue modifiers = object.value(QStringLiteral("modifiers"));
    if (!key.isString() || key.toString().isEmpty() || !modifiers.isDouble())
        return std::nullopt;
    const qint64 mask = modifiers.toInteger();
    Qt::KeyboardModifiers flags;
    // Command was the culling modifier there; Control plays that part here.
    if (mask & kOldCommand)
        flags |= Qt::ControlModifier;
    if (mask & kOldControl)
        flags |= Qt::MetaModifier;
    if (mask & kOldOption)
        flags |= Qt::AltModifier;
    if (mask & kOldShift)
        flags |= Qt::ShiftModifier;
    return Hotkey(key.toString(), flags);
}

} // namespace

HotkeyManager& HotkeyManager::shared()
{
    static HotkeyManager manager(platform::QSettingsStore::shared());
    return manager;
}

HotkeyManager::HotkeyManager(platform::SettingsStore& userDefaults, QObject* parent)
    : QObject(parent)
    , m_userDefaults(userDefaults)
{
    load();
}

QMap<HotkeyAction, Hotkey> HotkeyManager::defaultHotkeys()
{
    // Arrows move; digits 1–6 are the six colours in the settings' order; the folder panel, whose text speaks
    // of the digit 4, gets Tab by default because 4 is green (see README, "Key bindings").
    return {
        {HotkeyAction::navigatePrevious, Hotkey(QStringLiteral("leftArrow"))},
        {HotkeyAction::navigateNext, Hotkey(QStringLiteral("rightArrow"))},
        {HotkeyAction::navigateUp, Hotkey(QStringLiteral("upArrow"))},
        {HotkeyAction::navigateDown, Hotkey(QStringLiteral("downArrow"))},
        {HotkeyAction::navigateFolderNext, Hotkey(QStringLiteral("pageDown"))},
        {HotkeyAction::navigateFolderPrevious, Hotkey(QStringLiteral("pageUp"))},
        {HotkeyAction::annotateRed, Hotkey(QStringLiteral("1"))},
        {HotkeyAction::annotateYellow, Hotkey(QStringLiteral("2"))},
        {HotkeyAction::annotateOrange, Hotkey(QStringLiteral("3"))},
        {HotkeyAction::annotateGreen, Hotkey(QStringLiteral("4"))},
        {HotkeyAction::annotateBlue, Hotkey(QStringLiteral("5"))},
        {HotkeyAction::annotatePurple, Hotkey(QStringLiteral("6"))},
        {HotkeyAction::deleteFile, Hotkey(QStringLiteral("d"))},
        {HotkeyAction::restoreFile, Hotkey(QStringLiteral("z"), Qt::ControlModifier)},
        {HotkeyAction::rotateLeft, Hotkey(QStringLiteral("r"))},
        {HotkeyAction::toggleFullScreen, Hotkey(QStringLiteral("f"))},
        {HotkeyAction::toggleDirPanel, Hotkey(QStringLiteral("tab"))},
    };
}

Hotkey HotkeyManager::hotkey(HotkeyAction action) const
{
    return m_hotkeys.value(action, defaultHotkeys().value(action));
}

void HotkeyManager::setHotkey(HotkeyAction action, const Hotkey& hotkey)
{
    m_hotkeys.insert(action, hotkey);
    save();
    Q_EMIT hotkeysChanged();
}

void HotkeyManager::resetToDefaults()
{
    m_hotkeys = defaultHotkeys();
    save();
    Q_EMIT hotkeysChanged();
}

std::optional<HotkeyAction> HotkeyManager::action(const Hotkey& pressed) const
{
    for (auto it = m_hotkeys.constBegin(); it != m_hotkeys.constEnd(); ++it) {
        if (it.value() == pressed)
            return it.key();
    }
    return std::nullopt;
}

std::optional<HotkeyAction> HotkeyManager::actionForKey(int qtKey, Qt::KeyboardModifiers modifiers) const
{
    const auto name = platform::keyName(qtKey);
    if (!name)
        return std::nullopt;
    return action(Hotkey(*name, modifiers));
}

void HotkeyManager::load()
{
    m_hotkeys = defaultHotkeys();
    const auto stored = m_userDefaults.bytes(hotkeysKey);
    if (!stored)
        return;
    const QJsonDocument document = QJsonDocument::fromJson(*stored);
    if (document.isObject()) {
        const QJsonObject object = document.object();
        for (auto it = object.constBegin(); it != object.constEnd(); ++it) {
            const auto action = hotkeyActionFromRawValue(it.key());
            const auto hotkey = Hotkey::fromJson(it.value().toObject());
            if (action && hotkey)
                m_hotkeys.insert(*action, *hotkey);
        }
        return;
    }
    if (!document.isArray()) {
        Log::line(kTag, QStringLiteral("无法解码热键配置，使用默认设置"));
        return;
    }
    // The older form: [raw action, hotkey, raw action, hotkey, …].
    Log::line(kTag, QStringLiteral("开始迁移热键配置到标准编码"));
    const QJsonArray pairs = document.array();
    for (qsizetype i = 0; i + 1 < pairs.size(); i += 2) {
        const auto action = hotkeyActionFromRawValue(pairs.at(i).toString());
        const auto hotkey = hotkeyFromOldEncoding(pairs.at(i + 1).toObject());
        if (!action || !hotkey)
            continue;
        m_hotkeys.insert(*action, *hotkey);
        Log::line(kTag, QStringLiteral("迁移热键: ") + rawValue(*action));
    }
    save();
    Log::line(kTag, QStringLiteral("热键配置迁移完成"));
}

void HotkeyManager::save()
{
    QJsonObject object;
    for (auto it = m_hotkeys.constBegin(); it != m_hotkeys.constEnd(); ++it)
        object.insert(rawValue(it.key()), it.value().toJson());
    m_userDefaults.setBytes(hotkeysKey, QJsonDocument(object).toJson(QJsonDocument::Compact));
}

} // namespace lumaro::browse
