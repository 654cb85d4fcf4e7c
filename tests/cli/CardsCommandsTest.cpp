// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"

#include <QDir>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace lumaro::testing;

namespace {

void shoot(TempFolder& folder, int pairs, int orphans)
{
    for (int i = 0; i < pairs; ++i) {
        folder.write(QStringLiteral("jpg/IMG_%1.JPG").arg(i));
        folder.write(QStringLiteral("raw/IMG_%1.CR3").arg(i));
    }
    for (int i = 0; i < orphans; ++i)
        folder.write(QStringLiteral("raw/orphan %1.CR3").arg(i));
}

QStringList pairing(const TempFolder& folder, const QString& command)
{
    return {command,
            QStringLiteral("-q"),
            QStringLiteral("--jpg"),
            folder.filePath(QStringLiteral("jpg")),
            QStringLiteral("--raw"),
            folder.filePath(QStringLiteral("raw"))};
}

} // namespace

TEST(CliClean, WithoutYesListsTheOrphansAndChangesNothing)
{
    TempFolder folder;
    shoot(folder, 4, 2);

    const CliResult result = runCli(pairing(folder, QStringLiteral("clean")));

    EXPECT_EQ(result.exitCode, 0) << result.errText().toStdString();
    EXPECT_TRUE(result.outText().contains(QStringLiteral("Would move 2 RAW files")));
    EXPECT_TRUE(result.outText().contains(folder.filePath(QStringLiteral("raw/orphan 1.CR3"))));
    EXPECT_EQ(folder.entries(QStringLiteral("raw")).size(), 6);
}

TEST(CliClean, WithYesMovesTheOrphansToTheTrash)
{
    TempFolder folder;
    shoot(folder, 4, 2);

    const CliResult result = runCli(pairing(folder, QStringLiteral("clean")) << QStringLiteral("--yes"));

    EXPECT_EQ(result.exitCode, 0) << result.errText().toStdString();
    EXPECT_TRUE(result.outText().startsWith(QStringLiteral("清理完成！已删除 2 个冗余RAW文件")));
    EXPECT_EQ(folder.entries(QStringLiteral("raw")).size(), 4);
    const QDir trash(qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/Trash/files"));
    EXPECT_TRUE(trash.exists(QStringLiteral("orphan 0.CR3")));
}

TEST(CliClean, ThreeMatchedRefusesTheCleanAndTouchesNothing)
{
    TempFolder folder;
    shoot(folder, 3, 50);

    const CliResult result = runCli(pairing(folder, QStringLiteral("clean")) << QStringLiteral("--yes"));

    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.outText().contains(QStringLiteral("匹配数量较少（≤3），为防误删暂不提供清理")));
    EXPECT_EQ(folder.entries(QStringLiteral("raw")).size(), 53);
}

TEST(CliClean, BadFoldersAreUsageErrors)
{
    TempFolder folder;
    folder.write(QStringLiteral("file.txt"));
    EXPECT_EQ(runCli({QStringLiteral("clean"), QStringLiteral("--jpg"), folder.path()}).exitCode, 2);
    const CliResult result = runCli({QStringLiteral("clean"), QStringLiteral("--jpg"), folder.path(),
                                     QStringLiteral("--raw"), folder.filePath(QStringLiteral("file.txt"))});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errText().contains(QStringLiteral("is a file, not a folder")));
}

TEST(CliPick, CopiesIntoRawPickBesideTheRawFolder)
{
    TempFolder folder;
    shoot(folder, 2, 1);

    const CliResult result = runCli(pairing(folder, QStringLiteral("pick")));

    EXPECT_EQ(result.exitCode, 0) << result.errText().toStdString();
    EXPECT_EQ(folder.entries(QStringLiteral("RAW_PICK")),
              (QStringList{QStringLiteral("IMG_0.CR3"), QStringLiteral("IMG_1.CR3")}));

    // A folder in the way of one copy: that file fails, named with its reason even under -q.
    QFile::remove(folder.filePath(QStringLiteral("RAW_PICK/IMG_1.CR3")));
    folder.makeFolder(QStringLiteral("RAW_PICK/IMG_1.CR3"));
    const CliResult blocked = runCli(pairing(folder, QStringLiteral("pick")));
    EXPECT_EQ(blocked.exitCode, 1);
    EXPECT_TRUE(blocked.errText().contains(QStringLiteral("lumaro-cli pick: ") +
                                           folder.filePath(QStringLiteral("raw/IMG_1.CR3")) + QStringLiteral(": ")))
        << blocked.errText().toStdString();
}

TEST(CliCard, NamesTheFamilyAndCounts)
{
    TempFolder card;
    card.write(QStringLiteral("DCIM/CANONMSC/M3100.CTG"));
    card.makeFolder(QStringLiteral("MISC"));
    card.write(QStringLiteral("DCIM/100CANON/IMG_0001.JPG"));
    card.write(QStringLiteral("DCIM/100CANON/IMG_0001.CR3"));

    const CliResult result = runCli({QStringLiteral("card"), QStringLiteral("-q"), card.path()});

    EXPECT_EQ(result.exitCode, 0);
    EXPECT_TRUE(result.outText().startsWith(QStringLiteral("Canon R 系列\n")));
    EXPECT_TRUE(result.outText().contains(QStringLiteral("CR3: 1\n")));
    EXPECT_EQ(runCli({QStringLiteral("card"), QStringLiteral("-q"), card.filePath(QStringLiteral("MISC"))})
                  .outText()
                  .left(15),
              QStringLiteral("Not recognised:"));
    EXPECT_EQ(runCli({QStringLiteral("card"), card.filePath(QStringLiteral("none"))}).exitCode, 2);
}

TEST(CliImport, ASecondImportOffersOnlyNewPicturesAndAllCopiesEverythingAgain)
{
    TempFolder card;
    TempFolder work;
    card.write(QStringLiteral("DCIM/100CANON/IMG_0001.JPG"), "one");
    card.write(QStringLiteral("DCIM/101CANON/IMG_0001.JPG"), "two");
    card.write(QStringLiteral("DCIM/100CANON/MVI_0002.MP4"), "video");
    const QStringList import{QStringLiteral("import"), QStringLiteral("-q"), card.path(),
                             QStringLiteral("--to"), work.path()};

    EXPECT_EQ(runCli(import).exitCode, 0);
    const CliResult again = runCli(import);
    EXPECT_EQ(again.exitCode, 0);
    EXPECT_TRUE(again.outText().startsWith(QStringLiteral("没有发现新文件需要导入\n")))
        << again.outText().toStdString();
    EXPECT_EQ(work.entries(), QStringList{QStringLiteral("roll01")});
    card.write(QStringLiteral("DCIM/101CANON/IMG_0002.JPG"), "new");
    const CliResult json = runCli(import + QStringList{QStringLiteral("--json")});
    const QJsonObject summary = QJsonDocument::fromJson(json.out).object();
    EXPECT_EQ(summary.value(QStringLiteral("copied")).toInt(), 1) << json.outText().toStdString();
    EXPECT_EQ(summary.value(QStringLiteral("alreadyImported")).toInt(), 3);
    EXPECT_EQ(runCli(import + QStringList{QStringLiteral("--all")}).exitCode, 0);

    EXPECT_EQ(work.entries(),
              (QStringList{QStringLiteral("roll01"), QStringLiteral("roll02"), QStringLiteral("roll03")}));
    EXPECT_EQ(work.entries(QStringLiteral("roll03/JPG")),
              (QStringList{QStringLiteral("IMG_0001.JPG"), QStringLiteral("IMG_0001_1.JPG"),
                           QStringLiteral("IMG_0002.JPG")}));
    EXPECT_EQ(work.entries(QStringLiteral("roll03")),
              (QStringList{QStringLiteral("JPG"), QStringLiteral("VIDEO")}));
}

TEST(CliImport, NamesEachFailedFileAndItsErrorInPlainAndJson)
{
    // Two shots of one 250-letter name: the second needs "_1", and that name is too long for any file system.
    TempFolder card;
    TempFolder work;
    const QString stem(250, QLatin1Char('x'));
    card.write(QStringLiteral("DCIM/100CANON/") + stem + QStringLiteral(".JPG"), "one");
    const QString locked =
        card.write(QStringLiteral("DCIM/101CANON/") + stem + QStringLiteral(".JPG"), "two");
    const QStringList import{QStringLiteral("import"), QStringLiteral("-q"), card.path(),
                             QStringLiteral("--to"), work.path()};

    const CliResult json = runCli(import + QStringList{QStringLiteral("--json")});
    const CliResult plain = runCli(import + QStringList{QStringLiteral("--all")});

    EXPECT_EQ(json.exitCode, 1);
    const QJsonArray failures =
        QJsonDocument::fromJson(json.out).object().value(QStringLiteral("failures")).toArray();
    ASSERT_EQ(failures.size(), 1) << json.outText().toStdString();
    EXPECT_EQ(failures.at(0).toObject().value(QStringLiteral("file")).toString(), locked);
    EXPECT_FALSE(failures.at(0).toObject().value(QStringLiteral("error")).toString().isEmpty());
    EXPECT_EQ(plain.exitCode, 1);
    // Quiet hides the log, never the reason a file failed: on standard error in both forms.
    for (const CliResult& result : {json, plain})
        EXPECT_TRUE(result.errText().contains(QStringLiteral("lumaro-cli import: ") + locked + QStringLiteral(": ")))
            << result.errText().toStdString();
}

TEST(CliJson, EveryCaseAnswersInJson)
{
    TempFolder empty;
    TempFolder work;
    TempFolder jpg;
    TempFolder raw;
    jpg.write(QStringLiteral("a.JPG"));
    raw.write(QStringLiteral("b.CR2"));
    const std::vector<QStringList> commands{
        {QStringLiteral("import"), empty.path(), QStringLiteral("--to"), work.path()},
        {QStringLiteral("pick"), QStringLiteral("--jpg"), jpg.path(), QStringLiteral("--raw"), raw.path()},
        {QStringLiteral("import"), empty.filePath(QStringLiteral("gone")), QStringLiteral("--to"),
         work.path()},
        {QStringLiteral("card"), QStringLiteral("--bogus")},
    };
    for (const QStringList& command : commands) {
        const CliResult result =
            runCli(command + QStringList{QStringLiteral("-q"), QStringLiteral("--json")});
        QJsonParseError error{};
        QJsonDocument::fromJson(result.out, &error);
        EXPECT_EQ(error.error, QJsonParseError::NoError)
            << command.join(QLatin1Char(' ')).toStdString() << ": " << result.outText().toStdString();
    }
}

// A location that cannot take the pictures is refused before anything is copied.
TEST(CliImport, ALocationThatIsAFileOrReadOnlyIsAUsageError)
{
    TempFolder card;
    card.write(QStringLiteral("a.JPG"));
    const QString file = card.write(QStringLiteral("target"));
    TempFolder readOnly;
    QList<std::pair<QString, const char*>> cases{{file, "is a file, not a folder"}};
    if (!runningAsRoot()) // root may write into a read-only folder
        cases.append({readOnly.path(), "a read-only folder"});
    QFile::setPermissions(readOnly.path(), QFile::ReadOwner | QFile::ExeOwner);
    for (const auto& [location, reason] : cases) {
        const CliResult result =
            runCli({QStringLiteral("import"), card.path(), QStringLiteral("--to"), location});
        EXPECT_EQ(result.exitCode, 2) << reason;
        EXPECT_TRUE(result.errText().contains(QString::fromLatin1(reason))) << result.errText().toStdString();
    }
    QFile::setPermissions(readOnly.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(card.read(QStringLiteral("target")), QByteArray("x"));
    EXPECT_TRUE(readOnly.entries().isEmpty());
}
