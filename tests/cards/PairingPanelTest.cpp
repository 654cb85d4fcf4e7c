// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FolderDropZone.h"
#include "app/PairingPanel.h"
#include "browse/state/LMRModeState.h"
#include "tests/app/FakeToolHost.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QDropEvent>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace lumaro;
using namespace lumaro::testing;

namespace {

void drop(QWidget* zone, const QList<QUrl>& urls)
{
    QMimeData data;
    data.setUrls(urls);
    QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    // Straight to the widget: QApplication hands a drop only to the target of a real drag in progress.
    static_cast<QObject*>(zone)->event(&event);
}

QPushButton* buttonStartingWith(QWidget& panel, const QString& text)
{
    for (QPushButton* button : panel.findChildren<QPushButton*>()) {
        if (button->text().startsWith(text))
            return button;
    }
    return nullptr;
}

bool showsText(QWidget& panel, const QString& text)
{
    for (QLabel* label : panel.findChildren<QLabel*>()) {
        if (label->text().contains(text))
            return true;
    }
    return false;
}

struct Shoot
{
    TempFolder folder;
    Shoot(int pairs, int orphans)
    {
        for (int i = 0; i < pairs; ++i) {
            folder.write(QStringLiteral("jpg/IMG_%1.JPG").arg(i));
            folder.write(QStringLiteral("raw/IMG_%1.CR3").arg(i));
        }
        for (int i = 0; i < orphans; ++i)
            folder.write(QStringLiteral("raw/orphan_%1.CR3").arg(i));
    }
    QUrl url(const char* sub) const { return QUrl::fromLocalFile(folder.filePath(QString::fromLatin1(sub))); }
};

} // namespace

TEST(PairingPanel, DroppedFoldersAnalyseAndTheCleanButtonTrashesTheOrphans)
{
    Shoot shoot(4, 2);
    FakeToolHost host;
    app::PairingPanel panel(app::PairingPanel::Tool::clean, host);
    panel.show();
    const auto zones = panel.findChildren<app::FolderDropZone*>();
    ASSERT_EQ(zones.size(), 2);

    drop(zones.at(0), {shoot.url("jpg")});
    drop(zones.at(1), {QUrl(QStringLiteral("https://example.org/raw")), shoot.url("raw")});
    EXPECT_TRUE(showsText(panel, QStringLiteral("RAW文件夹已设置：") + shoot.folder.filePath(QStringLiteral("raw"))));
    buttonStartingWith(panel, QStringLiteral("分析"))->click();
    QPushButton* clean = nullptr;
    ASSERT_TRUE(waitUntil([&] {
        clean = buttonStartingWith(panel, QStringLiteral("清理 2 个冗余RAW文件"));
        return clean && clean->isVisible();
    }));
    clean->click();

    ASSERT_TRUE(waitUntil([&] { return host.reloads == 1; }));
    EXPECT_EQ(shoot.folder.entries(QStringLiteral("raw")).size(), 4);
    EXPECT_TRUE(QDir(qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/Trash/files")).exists(QStringLiteral("orphan_1.CR3")));
    EXPECT_TRUE(waitUntil([&] { return showsText(panel, QStringLiteral("清理完成！已删除 2 个冗余RAW文件")); }));
}

TEST(PairingPanel, ThreeMatchedShowsTheWarningAndNoCleanButton)
{
    Shoot shoot(3, 50);
    FakeToolHost host;
    app::PairingPanel panel(app::PairingPanel::Tool::clean, host);
    panel.show();
    const auto zones = panel.findChildren<app::FolderDropZone*>();
    drop(zones.at(0), {shoot.url("jpg")});
    drop(zones.at(1), {shoot.url("raw")});
    buttonStartingWith(panel, QStringLiteral("分析"))->click();

    ASSERT_TRUE(waitUntil([&] { return showsText(panel, QStringLiteral("匹配数量较少（≤3），为防误删暂不提供清理")); }));
    EXPECT_EQ(buttonStartingWith(panel, QStringLiteral("清理")), nullptr);
    EXPECT_EQ(shoot.folder.entries(QStringLiteral("raw")).size(), 53);
}

TEST(PairingPanel, AFileDroppedIsRefused)
{
    Shoot shoot(1, 0);
    FakeToolHost host;
    app::PairingPanel panel(app::PairingPanel::Tool::pick, host);
    LogCapture log;

    drop(panel.findChildren<app::FolderDropZone*>().at(1), {shoot.url("raw/IMG_0.CR3")});

    EXPECT_EQ(log.countStartingWith(QStringLiteral("❌ 拖拽项不是有效的目录: item=")), 1);
    EXPECT_TRUE(log.contains(QStringLiteral("❌ 没有找到有效的拖拽项")));
    EXPECT_FALSE(showsText(panel, QStringLiteral("RAW文件夹已设置：")));
}
