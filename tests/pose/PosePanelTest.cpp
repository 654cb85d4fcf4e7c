// SPDX-License-Identifier: GPL-3.0-or-later
// The pose panel offscreen: it follows the selection, analyses off the main thread and shows each person's
// verdict and reasons; without a model it says so.
#include "app/PosePanel.h"
#include "app/ToolHost.h"
#include "browse/state/LMRModeState.h"

#include "tests/support/TempFolder.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lumaro::testing {
namespace {

class FakeHost : public app::ToolHost
{
public:
    browse::LMRModeState& modeState() override { return m_state; }
    void addToolPanel(const QString&, QWidget*) override {}
    void reloadCurrentFolder() override {}
    QWidget* dialogParent() override { return nullptr; }

private:
    browse::LMRModeState m_state;
};

class PosePanelTest : public ::testing::Test
{
protected:
    void selectCopyOf(const QString& photo)
    {
        const QString name = QFileInfo(photo).fileName();
        ASSERT_TRUE(QFile::copy(photo, m_folder.filePath(name)));
        m_host.modeState().setFolderPath(m_folder.path(), std::nullopt, m_folder.path());
        m_host.modeState().setImageFiles({name});
        m_host.modeState().select(0);
    }

    TempFolder m_folder;
    FakeHost m_host;
};

TEST_F(PosePanelTest, ShowsTheSelectedPicturesPeopleWithTheirVerdicts)
{
    const QString models = sharedModelsDir();
    if (models.isEmpty())
        GTEST_SKIP() << "../shared/models is not there; the panel needs its MoveNet file";
    qputenv("LUMARO_MODELS_DIR", QFile::encodeName(models));
    app::PosePanel panel(m_host);
    panel.show();
    selectCopyOf(models + QStringLiteral("/test-images/basketball1.png"));
    auto* details = panel.findChild<QPlainTextEdit*>();
    ASSERT_TRUE(details);
    EXPECT_TRUE(
        waitUntil([&] { return details->toPlainText().contains(QStringLiteral("LEV1 POSE_STAND")); }, 20000))
        << details->toPlainText().toStdString();
    EXPECT_TRUE(details->toPlainText().contains(QStringLiteral("站立 Stand")));

    // Exporting the people shown: a tile each and the contact sheet, the status line saying so.
    auto* exportButton = panel.findChild<QPushButton*>();
    ASSERT_TRUE(exportButton && exportButton->isEnabled());
    TempFolder tiles;
    panel.exportTilesTo(tiles.path());
    auto* status = panel.findChild<QLabel*>();
    EXPECT_TRUE(
        waitUntil([&] { return status->text().contains(QStringLiteral("已导出 2 个姿态图块")); }, 20000))
        << status->text().toStdString();
    EXPECT_EQ(QDir(tiles.path()).entryList(QDir::Files).size(), 3);
    qunsetenv("LUMARO_MODELS_DIR");
}

TEST_F(PosePanelTest, WithoutAModelSaysSo)
{
    qputenv("LUMARO_MODELS_DIR", QFile::encodeName(m_folder.makeFolder(QStringLiteral("empty models"))));
    app::PosePanel panel(m_host);
    panel.show();
    m_folder.writePicture(QStringLiteral("a.jpg"));
    m_host.modeState().setFolderPath(m_folder.path(), std::nullopt, m_folder.path());
    m_host.modeState().setImageFiles({QStringLiteral("a.jpg")});
    m_host.modeState().select(0);
    auto* status = panel.findChild<QLabel*>();
    ASSERT_TRUE(status);
    EXPECT_TRUE(waitUntil([&] { return status->text().contains(QStringLiteral("未找到姿态模型")); }, 20000))
        << status->text().toStdString();
    qunsetenv("LUMARO_MODELS_DIR");
}

} // namespace
} // namespace lumaro::testing
