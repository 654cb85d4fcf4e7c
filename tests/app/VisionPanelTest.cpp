// SPDX-License-Identifier: GPL-3.0-or-later
// The analysis panel's outcome line belongs to the folder it was about: another folder opened clears it, and a
// run that ends after the photographer moved on names its folder.
#include "app/VisionPanel.h"
#include "tests/app/FakeToolHost.h"
#include "tests/support/TempFolder.h"
#include "tests/vision/VisionIndexFixture.h"

#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

namespace lumaro::app {
namespace {

using testing::FakeToolHost;
using testing::TempFolder;
using testing::waitUntil;

void open(FakeToolHost& host, const QString& folder)
{
    host.modeState().setFolderPath(folder, folder, folder);
}

TEST(VisionPanel, TheOutcomeLineFollowsTheFolderItWasAbout)
{
    TempFolder first, second;
    for (TempFolder* folder : {&first, &second})
        folder->write(QStringLiteral("DSC_0001.JPG")); // the same name in both
    FakeToolHost host;
    open(host, first.path());
    VisionPanel panel(host);
    QLabel* status = panel.findChild<QLabel*>();
    QPushButton* analyse = panel.findChild<QPushButton*>();
    ASSERT_TRUE(status && analyse);

    analyse->click();
    ASSERT_TRUE(waitUntil([&] { return status->text().contains(QStringLiteral("已分析")); }));
    EXPECT_FALSE(status->text().contains(QStringLiteral("：")));
    open(host, second.path());
    EXPECT_TRUE(status->text().isEmpty());

    // Moved on before the run ends: its outcome comes back under its folder's name.
    analyse->click();
    open(host, first.path());
    EXPECT_FALSE(status->text().isEmpty()) << "a run still going keeps saying so";
    ASSERT_TRUE(waitUntil([&] { return status->text().contains(QStringLiteral("已分析")); }));
    EXPECT_TRUE(status->text().startsWith(QFileInfo(second.path()).fileName() + QStringLiteral("："))) <<
        status->text().toStdString();
}

} // namespace
} // namespace lumaro::app
