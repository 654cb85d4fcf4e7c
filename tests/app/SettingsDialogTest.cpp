// SPDX-License-Identifier: GPL-3.0-or-later
// The key bindings editor: recording a key, saving and cancelling per row, the groups; the grid's columns.
#include "app/SettingsDialog.h"
#include "app/KeyBindingRow.h"
#include "browse/hotkeys/HotkeyManager.h"
#include "browse/hotkeys/ViewerHotkeys.h"
#include "browse/marks/PictureRater.h"
#include "browse/state/LMRModeState.h"
#include "platform/fakes/MemorySettingsStore.h"

#include <QComboBox>
#include <QGroupBox>
#include <QTest>

#include <gtest/gtest.h>

namespace lumaro::app {
namespace {

using browse::HotkeyAction;

class SettingsDialogTest : public ::testing::Test
{
protected:
    platform::MemorySettingsStore m_store;
    browse::HotkeyManager m_manager{m_store};
    browse::LMRModeState m_state;
    browse::ViewerHotkeys m_viewerKeys{m_store, m_manager};
    browse::PictureRater m_rater{m_store};
    SettingsDialog m_dialog{m_manager, m_state, nullptr, &m_viewerKeys, &m_rater};
};

TEST_F(SettingsDialogTest, ShowsTheBindingGroups)
{
    QStringList titles;
    for (const QGroupBox* box : m_dialog.findChildren<QGroupBox*>())
        titles.append(box->title());
    EXPECT_TRUE(titles.contains(QStringLiteral("方向与文件夹导航")));
    EXPECT_TRUE(titles.contains(QStringLiteral("颜色标签 1-6")));
    for (HotkeyAction action : browse::allHotkeyActions())
        EXPECT_NE(m_dialog.row(action), nullptr);
}

TEST_F(SettingsDialogTest, RecordAndSaveStoresTheNewBinding)
{
    m_dialog.show();
    KeyBindingRow& row = *m_dialog.row(HotkeyAction::deleteFile);
    EXPECT_EQ(row.recorder().text(), QStringLiteral("点击开始录制..."));
    QTest::mouseClick(&row.recorder(), Qt::LeftButton);
    EXPECT_EQ(row.recorder().text(), QStringLiteral("请按下快捷键..."));
    QTest::keyClick(&row.recorder(), Qt::Key_X, Qt::ShiftModifier);
    EXPECT_FALSE(row.recorder().listener().isListening());
    EXPECT_EQ(m_manager.hotkey(HotkeyAction::deleteFile).key, QStringLiteral("d")); // not yet
    QTest::mouseClick(&row.saveButton(), Qt::LeftButton);
    EXPECT_EQ(m_manager.hotkey(HotkeyAction::deleteFile),
              browse::Hotkey(QStringLiteral("x"), Qt::ShiftModifier));
    EXPECT_TRUE(m_store.bytes(browse::HotkeyManager::hotkeysKey).has_value());
    EXPECT_EQ(row.recorder().text(), QStringLiteral("点击开始录制..."));
}

TEST_F(SettingsDialogTest, CancelKeepsTheOldBinding)
{
    m_dialog.show();
    KeyBindingRow& row = *m_dialog.row(HotkeyAction::rotateLeft);
    const browse::Hotkey before = m_manager.hotkey(HotkeyAction::rotateLeft);
    QTest::mouseClick(&row.recorder(), Qt::LeftButton);
    QTest::keyClick(&row.recorder(), Qt::Key_Q);
    QTest::mouseClick(&row.cancelButton(), Qt::LeftButton);
    EXPECT_EQ(m_manager.hotkey(HotkeyAction::rotateLeft), before);
    EXPECT_FALSE(row.recorder().listener().capturedKey().has_value());
}

TEST_F(SettingsDialogTest, ColumnsGoToTheSharedState)
{
    QComboBox& columns = m_dialog.columns();
    columns.setCurrentIndex(columns.findData(3));
    EXPECT_EQ(m_state.imagesPerRow(), 3);
}

TEST_F(SettingsDialogTest, ViewerKeysAreBoundApartAndTheSidecarNamingIsStored)
{
    m_dialog.show();
    KeyBindingRow& row = *m_dialog.row(browse::ViewerAction::filterPicks);
    QTest::mouseClick(&row.recorder(), Qt::LeftButton);
    QTest::keyClick(&row.recorder(), Qt::Key_D); // the delete key
    EXPECT_FALSE(row.clashText().isEmpty());
    EXPECT_FALSE(row.saveButton().isEnabled());
    QTest::mouseClick(&row.recorder(), Qt::LeftButton);
    QTest::keyClick(&row.recorder(), Qt::Key_Y);
    QTest::mouseClick(&row.saveButton(), Qt::LeftButton);
    EXPECT_EQ(m_viewerKeys.hotkey(browse::ViewerAction::filterPicks), browse::Hotkey(QStringLiteral("y")));
    EXPECT_TRUE(m_store.contains(browse::ViewerHotkeys::settingsKey));
    EXPECT_FALSE(m_store.contains(browse::HotkeyManager::hotkeysKey)); // the seventeen stay as they were

    QComboBox& naming = m_dialog.sidecarNaming();
    EXPECT_EQ(m_rater.naming(), platform::SidecarNaming::pictureName);
    naming.setCurrentIndex(naming.findData(int(platform::SidecarNaming::stem)));
    EXPECT_EQ(browse::PictureRater(m_store).naming(), platform::SidecarNaming::stem);
}

} // namespace
} // namespace lumaro::app
