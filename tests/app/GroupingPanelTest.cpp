// SPDX-License-Identifier: GPL-3.0-or-later
// The grouping panel over a real folder: the renames happen off the main thread, the result is shown and the
// folder listed again; group then clean from the panel gives back the names.
#include "app/GroupingPanel.h"
#include "tests/app/FakeToolHost.h"
#include "tests/support/TempFolder.h"
#include "tests/vision/VisionIndexFixture.h"

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

namespace lumaro::app {
namespace {

using testing::FakeToolHost;
using testing::TempFolder;
using testing::visibleFileNames;
using testing::waitUntil;

QPushButton* button(GroupingPanel& panel, const QString& text)
{
    for (QPushButton* candidate : panel.findChildren<QPushButton*>()) {
        if (candidate->text() == text)
            return candidate;
    }
    return nullptr;
}

TEST(GroupingPanel, GroupsThenCleansTheCurrentFolderAndReloadsIt)
{
    TempFolder folder;
    const QStringList names{QStringLiteral("IMG_0001.jpg"), QStringLiteral("IMG_0002.jpg"),
                            QStringLiteral("b.png")};
    for (const QString& name : names)
        folder.write(name);
    testing::writeVisionIndex(folder, QStringLiteral("vision_index_0101000000_x.json"),
                              QStringLiteral("2024-01-01T00:00:00Z"), {});
    FakeToolHost host;
    host.modeState().setFolderPath(folder.path(), folder.path(), folder.path());
    GroupingPanel panel(host);
    QLabel* status = panel.findChild<QLabel*>();
    ASSERT_TRUE(status);

    button(panel, QStringLiteral("文件名分组"))->click();
    ASSERT_TRUE(waitUntil([&] { return host.reloads == 1; }));
    EXPECT_EQ(status->text(), QStringLiteral("分组完成: 2 个组，3 个文件已重命名"));
    EXPECT_TRUE(folder.exists(QStringLiteral("_G2_b.png")));

    button(panel, QStringLiteral("清除分组前缀"))->click();
    ASSERT_TRUE(waitUntil([&] { return host.reloads == 2; }));
    EXPECT_EQ(visibleFileNames(folder), names);
}

TEST(GroupingPanel, APreviewRenamesNothingAndLeavesTheListAlone)
{
    TempFolder folder;
    folder.write(QStringLiteral("IMG_0001.jpg"));
    testing::writeVisionIndex(folder, QStringLiteral("vision_index_0101000000_x.json"), {}, {});
    FakeToolHost host;
    host.modeState().setFolderPath(folder.path(), folder.path(), folder.path());
    GroupingPanel panel(host);
    panel.findChild<QCheckBox*>()->setChecked(true);
    QLabel* status = panel.findChild<QLabel*>();
    button(panel, QStringLiteral("文件名分组"))->click();
    ASSERT_TRUE(waitUntil([&] { return status->text().startsWith(QStringLiteral("预览")); }));
    EXPECT_EQ(host.reloads, 0);
    EXPECT_TRUE(folder.exists(QStringLiteral("IMG_0001.jpg")));
}

} // namespace
} // namespace lumaro::app
