// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/CardImportDialog.h"

#include "tests/cards/CardLayouts.h"
#include "tests/support/TempFolder.h"

#include <QCheckBox>
#include <QDir>
#include <QLabel>
#include <QPushButton>

#include <gtest/gtest.h>

using lumaro::app::CardImportDialog;
using lumaro::testing::TempFolder;
using lumaro::testing::waitUntil;

TEST(CardImportDialog, ImportsOnceShowsTheCameraAndOffersOnlyNewPicturesNextTime)
{
    TempFolder card;
    TempFolder data;
    const QString store = data.filePath(QStringLiteral("cards.db"));
    card.write(QStringLiteral("DCIM/100CANON/IMG_0001.JPG"),
               lumaro::testing::jpegWithCamera("Canon", "Canon EOS R5"));
    card.write(QStringLiteral("DCIM/100CANON/IMG_0001.CR3"), "raw");
    const QDir location(QDir::home().filePath(QStringLiteral("Pictures/Lumaro")));

    {
        CardImportDialog dialog(card.path(), nullptr, store);
        auto* button = dialog.findChild<QPushButton*>(QStringLiteral("import"));
        ASSERT_TRUE(waitUntil([&] { return button->isEnabled(); }));
        EXPECT_TRUE(waitUntil([&] {
            return dialog.findChild<QLabel*>(QStringLiteral("recognition"))
                ->text()
                .contains(QStringLiteral("Canon EOS R5"));
        }));
        button->click();
        ASSERT_TRUE(waitUntil([&] { return button->text() == QStringLiteral("已导入"); }));
        EXPECT_FALSE(button->isEnabled()) << "a second click would copy the whole card into another roll";
        button->click();
    }
    EXPECT_EQ(location.entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList{QStringLiteral("roll01")});

    card.write(QStringLiteral("DCIM/100CANON/IMG_0002.JPG"), "new");
    CardImportDialog again(card.path(), nullptr, store);
    auto* files = again.findChild<QLabel*>(QStringLiteral("files"));
    ASSERT_TRUE(
        waitUntil([&] { return again.findChild<QPushButton*>(QStringLiteral("import"))->isEnabled(); }));
    EXPECT_TRUE(files->text().startsWith(QStringLiteral("新文件信息：JPG 1，RAW 0")))
        << files->text().toStdString();
    auto* everything = again.findChild<QCheckBox*>(QStringLiteral("everything"));
    EXPECT_FALSE(everything->isHidden());
    everything->setChecked(true);
    EXPECT_TRUE(files->text().startsWith(QStringLiteral("新文件信息：JPG 2，RAW 1")))
        << files->text().toStdString();
}

TEST(CardImportDialog, SaysWhenTheCardsImportedBeforeCannotBeRead)
{
    TempFolder card;
    TempFolder data;
    const QString store =
        data.write(QStringLiteral("cards.db"), QByteArray("SQLite format 3").append(4096, 'x'));
    card.write(QStringLiteral("DCIM/100CANON/IMG_0001.JPG"), "jpg");

    CardImportDialog dialog(card.path(), nullptr, store);
    auto* files = dialog.findChild<QLabel*>(QStringLiteral("files"));
    ASSERT_TRUE(
        waitUntil([&] { return dialog.findChild<QPushButton*>(QStringLiteral("import"))->isEnabled(); }));
    EXPECT_TRUE(files->text().contains(QStringLiteral("无法读取以前的导入记录")))
        << files->text().toStdString();
    EXPECT_TRUE(files->text().startsWith(QStringLiteral("新文件信息：JPG 1")))
        << files->text().toStdString();
}
