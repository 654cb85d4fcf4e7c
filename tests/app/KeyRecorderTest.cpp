// SPDX-License-Identifier: GPL-3.0-or-later
// Recording a binding in the settings: Tab is a key like any other, and a key that another action has is a clash.
#include "app/KeyBindingRow.h"
#include "app/QtChineseTranslation.h"
#include "app/SettingsDialog.h"
#include "browse/hotkeys/HotkeyManager.h"
#include "browse/state/LMRModeState.h"
#include "platform/fakes/MemorySettingsStore.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTest>

#include <gtest/gtest.h>

namespace lumaro::app {
namespace {

using browse::Hotkey;
using browse::HotkeyAction;

class KeyRecorderTest : public ::testing::Test
{
protected:
    KeyBindingRow& record(HotkeyAction action, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        m_dialog.show();
        KeyBindingRow& row = *m_dialog.row(action);
        QTest::mouseClick(&row.recorder(), Qt::LeftButton);
        QTest::keyClick(&row.recorder(), Qt::Key(key), modifiers);
        return row;
    }

    platform::MemorySettingsStore m_store;
    browse::HotkeyManager m_manager{m_store};
    browse::LMRModeState m_state;
    SettingsDialog m_dialog{m_manager, m_state};
};

TEST_F(KeyRecorderTest, TabIsRecordedNotAMoveToTheNextField)
{
    m_manager.setHotkey(HotkeyAction::toggleDirPanel, Hotkey(QStringLiteral("7")));
    KeyBindingRow& row = record(HotkeyAction::toggleDirPanel, Qt::Key_Tab);
    ASSERT_TRUE(row.recorder().listener().capturedKey().has_value());
    EXPECT_EQ(row.recorder().listener().capturedKey()->key, QStringLiteral("tab"));
    QTest::mouseClick(&row.saveButton(), Qt::LeftButton);
    EXPECT_EQ(m_manager.hotkey(HotkeyAction::toggleDirPanel), Hotkey(QStringLiteral("tab")));
}

TEST_F(KeyRecorderTest, AKeyOfAnotherActionIsAClashAndIsNotSaved)
{
    const Hotkey before = m_manager.hotkey(HotkeyAction::rotateLeft);
    KeyBindingRow& row = record(HotkeyAction::rotateLeft, Qt::Key_D);
    EXPECT_EQ(row.clashText(), QStringLiteral("与“删除文件”冲突"));
    EXPECT_FALSE(row.saveButton().isEnabled());
    QTest::mouseClick(&row.saveButton(), Qt::LeftButton);
    EXPECT_EQ(m_manager.hotkey(HotkeyAction::rotateLeft), before);
    EXPECT_EQ(m_manager.actionForKey(Qt::Key_D, Qt::NoModifier), HotkeyAction::deleteFile);

    record(HotkeyAction::rotateLeft, Qt::Key_R); // its own key again: no clash
    EXPECT_TRUE(row.clashText().isEmpty());
}

TEST(QtChineseTranslation, QtsOwnButtonsSpeakChinese)
{
    ASSERT_TRUE(installQtChineseTranslation(*qApp)) << "qt6-translations-l10n is in scripts/install-deps.sh";
    QDialogButtonBox buttons(QDialogButtonBox::Cancel | QDialogButtonBox::Open);
    EXPECT_EQ(buttons.button(QDialogButtonBox::Cancel)->text(), QStringLiteral("取消"));
}

} // namespace
} // namespace lumaro::app
