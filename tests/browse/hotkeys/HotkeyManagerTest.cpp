// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/hotkeys/HotkeyManager.h"
#include "browse/hotkeys/KeyListener.h"
#include "platform/fakes/MemorySettingsStore.h"

#include "tests/support/LogCapture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace lumaro::browse;
using lumaro::platform::MemorySettingsStore;
using lumaro::testing::LogCapture;

// Bindings are stored under the actions' names, and colours are written to disk as tag names.
TEST(HotkeyAction, EveryStoredNameReadsBackAsItsAction)
{
    for (HotkeyAction action : allHotkeyActions()) {
        EXPECT_EQ(hotkeyActionFromRawValue(rawValue(action)), action);
        EXPECT_FALSE(displayName(action).isEmpty());
        EXPECT_EQ(symbolColor(action).isValid(), colorName(action).has_value());
    }
    EXPECT_EQ(colorName(HotkeyAction::annotateOrange), QStringLiteral("orange"));
    EXPECT_EQ(colorName(HotkeyAction::deleteFile), std::nullopt);
    EXPECT_EQ(hotkeyActionFromRawValue(QStringLiteral("delete")), std::nullopt);
}

TEST(Hotkey, EncodesWithExactlyKeyAndModifiers)
{
    const QJsonObject json =
        Hotkey(QStringLiteral("z"), Qt::ControlModifier | Qt::ShiftModifier | Qt::KeypadModifier).toJson();
    EXPECT_EQ(json.keys(), QStringList({"key", "modifiers"}));
    const auto back = Hotkey::fromJson(json);
    ASSERT_TRUE(back);
    EXPECT_EQ(back->modifiers, Qt::ControlModifier | Qt::ShiftModifier); // the keypad never takes part
    EXPECT_FALSE(Hotkey::fromJson(QJsonObject{{"key", "a"}, {"modifiers", QJsonArray{"hyper"}}}));
    EXPECT_FALSE(Hotkey::fromJson(QJsonObject{{"key", ""}, {"modifiers", QJsonArray{}}}));
}

TEST(HotkeyManager, BindingsSurviveARestartThroughTheSettingsStore)
{
    MemorySettingsStore store;
    {
        HotkeyManager manager(store);
        manager.setHotkey(HotkeyAction::deleteFile, Hotkey(QStringLiteral("x"), Qt::AltModifier));
        manager.setHotkey(HotkeyAction::toggleDirPanel, Hotkey(QStringLiteral("f5")));
    }
    HotkeyManager restarted(store);
    EXPECT_EQ(restarted.hotkey(HotkeyAction::deleteFile), Hotkey(QStringLiteral("x"), Qt::AltModifier));
    EXPECT_EQ(restarted.hotkey(HotkeyAction::toggleDirPanel), Hotkey(QStringLiteral("f5")));
    EXPECT_EQ(restarted.hotkey(HotkeyAction::navigateNext),
              HotkeyManager::defaultHotkeys()[HotkeyAction::navigateNext]);
    const QJsonObject stored =
        QJsonDocument::fromJson(*store.bytes(QStringLiteral("HotkeyManager_Hotkeys"))).object();
    EXPECT_EQ(stored.size(), 17);
    EXPECT_EQ(stored.value(QStringLiteral("delete_file")).toObject().value(QStringLiteral("key")).toString(),
              QStringLiteral("x"));
}

TEST(HotkeyManager, UndecodableDataGivesTheDefaults)
{
    for (const QByteArray& junk : {QByteArrayLiteral("{not json"), QByteArrayLiteral("42"), QByteArray()}) {
        MemorySettingsStore store;
        store.setBytes(QStringLiteral("HotkeyManager_Hotkeys"), junk);
        HotkeyManager manager(store);
        EXPECT_EQ(manager.hotkeys(), HotkeyManager::defaultHotkeys());
    }
}

TEST(HotkeyManager, OlderEncodingIsMigratedAndStoredAgain)
{
    MemorySettingsStore store;
    // An array of alternating action and hotkey, modifiers as the old platform's mask (1 << 20 was Command).
    store.setBytes(
        QStringLiteral("HotkeyManager_Hotkeys"),
        R"(["delete_file", {"key": "k", "modifiers": 1048576}, "rotate_left", {"key": "l", "modifiers": 0},
                       "no_such_action", {"key": "q", "modifiers": 0}])");
    LogCapture log;
    HotkeyManager manager(store);
    EXPECT_EQ(manager.hotkey(HotkeyAction::deleteFile), Hotkey(QStringLiteral("k"), Qt::ControlModifier));
    EXPECT_EQ(manager.hotkey(HotkeyAction::rotateLeft), Hotkey(QStringLiteral("l")));
    EXPECT_TRUE(log.contains(QStringLiteral("HotkeyManager - 开始迁移热键配置到标准编码")));
    EXPECT_TRUE(log.contains(QStringLiteral("HotkeyManager - 迁移热键: delete_file")));
    EXPECT_TRUE(log.contains(QStringLiteral("HotkeyManager - 热键配置迁移完成")));
    EXPECT_TRUE(QJsonDocument::fromJson(*store.bytes(QStringLiteral("HotkeyManager_Hotkeys"))).isObject());
}

TEST(HotkeyManager, KeypadAndFunctionKeysReachTheDigitBindings)
{
    MemorySettingsStore store;
    HotkeyManager manager(store);
    EXPECT_EQ(manager.actionForKey(Qt::Key_1, Qt::KeypadModifier), HotkeyAction::annotateRed);
    EXPECT_EQ(manager.actionForKey(Qt::Key_1, Qt::NoModifier), HotkeyAction::annotateRed);
    EXPECT_EQ(manager.actionForKey(Qt::Key_F12, Qt::NoModifier), HotkeyAction::annotateYellow);
    EXPECT_EQ(manager.actionForKey(Qt::Key_Delete, Qt::NoModifier), HotkeyAction::deleteFile);
    EXPECT_EQ(manager.actionForKey(Qt::Key_Z, Qt::ControlModifier), HotkeyAction::restoreFile);
    EXPECT_EQ(manager.actionForKey(Qt::Key_Z, Qt::NoModifier), std::nullopt);
    EXPECT_EQ(manager.actionForKey(Qt::Key_Shift, Qt::ShiftModifier), std::nullopt);
}

TEST(HotkeyManager, DefaultsGiveEveryActionItsOwnKey)
{
    QSet<QString> seen;
    for (const Hotkey& hotkey : HotkeyManager::defaultHotkeys())
        seen.insert(hotkey.displayText());
    EXPECT_EQ(seen.size(), 17);
}

TEST(KeyListener, CapturesOneKnownKeyWhileListening)
{
    KeyListener listener;
    LogCapture log;
    EXPECT_EQ(listener.promptText(), QStringLiteral("点击开始录制..."));
    EXPECT_FALSE(listener.capture(Qt::Key_A, Qt::NoModifier)); // not listening
    listener.startListening();
    EXPECT_EQ(listener.promptText(), QStringLiteral("请按下快捷键..."));
    EXPECT_TRUE(log.contains(QStringLiteral("KeyListener - 开始监听按键")));
    EXPECT_FALSE(listener.capture(Qt::Key_Control, Qt::ControlModifier));
    EXPECT_EQ(log.countStartingWith(QStringLiteral("KeyListener - 未知的keyCode: ")), 1);
    EXPECT_FALSE(listener.capturedKey());
    EXPECT_TRUE(listener.capture(Qt::Key_3, Qt::KeypadModifier | Qt::ShiftModifier));
    EXPECT_EQ(listener.capturedKey(), Hotkey(QStringLiteral("3"), Qt::ShiftModifier));
    EXPECT_EQ(log.countStartingWith(QStringLiteral("KeyListener - 转换后的热键: ")), 1);
}
