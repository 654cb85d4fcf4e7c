// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli channel and bundle on real folders, with the real group, ungroup and trash commands in between.
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"
#include "tests/vision/VisionIndexFixture.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace lumaro::testing;

namespace {

CliResult cli(const QStringList& arguments)
{
    return runCli(QStringList{arguments.first(), QStringLiteral("--quiet")} + arguments.mid(1));
}

QJsonArray bundleItems(const QString& name)
{
    return QJsonDocument::fromJson(
               cli({QStringLiteral("bundle"), QStringLiteral("list"), name, QStringLiteral("--json")}).out)
        .array();
}

QString pathAt(const QJsonArray& items, int i)
{
    return items.at(i).toObject().value(QStringLiteral("path")).toString();
}

} // namespace

TEST(CliBundle, FollowsItsPicturesThroughGroupingAndTrashAndExportsWithoutOverwriting)
{
    TempFolder shoot;
    TempFolder other;
    std::vector<std::pair<QString, QString>> marks;
    for (const QString& name : {QStringLiteral("a1.jpg"), QStringLiteral("a2.jpg")}) {
        shoot.write(name, name.toUtf8());
        marks.emplace_back(name, QStringLiteral("MARK_OUTDOOR"));
    }
    writeVisionIndex(shoot, QStringLiteral("vision_index_0501100000_x.json"),
                     QStringLiteral("2024-05-01T10:00:00Z"), marks);
    shoot.write(QStringLiteral("a1.xmp"),
                "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"><rdf:RDF "
                "xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\"/></x:xmpmeta>");
    const QString b = other.write(QStringLiteral("b.jpg"), "b");
    const QString a1 = shoot.filePath(QStringLiteral("a1.jpg"));
    ASSERT_EQ(cli({QStringLiteral("bundle"), QStringLiteral("new"), QStringLiteral("picks")}).exitCode, 0);
    EXPECT_EQ(cli({QStringLiteral("bundle"), QStringLiteral("new"), QStringLiteral("picks")}).exitCode, 2);
    EXPECT_EQ(cli({QStringLiteral("bundle"), QStringLiteral("add"), QStringLiteral("picks"), a1, b,
                   shoot.filePath(QStringLiteral("nope.jpg"))})
                  .exitCode,
              1);
    EXPECT_EQ(cli({QStringLiteral("tags"), a1, QStringLiteral("--toggle"), QStringLiteral("red")}).exitCode,
              0);

    ASSERT_EQ(cli({QStringLiteral("group"), shoot.path()}).exitCode, 0);
    QJsonArray items = bundleItems(QStringLiteral("picks"));
    ASSERT_EQ(items.size(), 2);
    EXPECT_EQ(pathAt(items, 0), shoot.filePath(QStringLiteral("_G1_a1.jpg")));
    ASSERT_EQ(cli({QStringLiteral("ungroup"), shoot.path()}).exitCode, 0);
    EXPECT_EQ(pathAt(bundleItems(QStringLiteral("picks")), 0), a1);

    ASSERT_EQ(cli({QStringLiteral("trash"), b}).exitCode, 0);
    items = bundleItems(QStringLiteral("picks"));
    ASSERT_EQ(items.size(), 2); // shown as missing, not dropped
    EXPECT_FALSE(items.at(1).toObject().value(QStringLiteral("present")).toBool());
    ASSERT_EQ(cli({QStringLiteral("trash"), QStringLiteral("--restore"), b}).exitCode, 0);
    EXPECT_TRUE(
        bundleItems(QStringLiteral("picks")).at(1).toObject().value(QStringLiteral("present")).toBool());

    TempFolder out;
    out.write(QStringLiteral("b.jpg"), "someone else's");
    ASSERT_EQ(cli({QStringLiteral("bundle"), QStringLiteral("export"), QStringLiteral("picks"),
                   QStringLiteral("--to"), out.path()})
                  .exitCode,
              0);
    EXPECT_EQ(out.read(QStringLiteral("b.jpg")), QByteArrayLiteral("someone else's"));
    EXPECT_EQ(out.read(QStringLiteral("b_1.jpg")), QByteArrayLiteral("b"));
    EXPECT_EQ(out.read(QStringLiteral("a1.xmp")), shoot.read(QStringLiteral("a1.xmp")));
    EXPECT_TRUE(cli({QStringLiteral("tags"), out.filePath(QStringLiteral("a1.jpg"))})
                    .outText()
                    .contains(QStringLiteral("red")));

    const QString zip = out.filePath(QStringLiteral("picks.zip"));
    ASSERT_EQ(cli({QStringLiteral("bundle"), QStringLiteral("export"), QStringLiteral("picks"),
                   QStringLiteral("--zip"), zip})
                  .exitCode,
              0);
    const QByteArray written = out.read(QStringLiteral("picks.zip"));
    EXPECT_TRUE(written.startsWith("PK") && written.contains("a1.xmp"));
    EXPECT_EQ(cli({QStringLiteral("bundle"), QStringLiteral("export"), QStringLiteral("picks"),
                   QStringLiteral("--zip"), zip})
                  .exitCode,
              2);
    EXPECT_EQ(out.read(QStringLiteral("picks.zip")), written);
}

TEST(CliChannel, AddsListsMovesAndRemovesAndRefusesBadInput)
{
    TempFolder folder;
    const QString a = folder.makeFolder(QStringLiteral("a"));
    const QString b = folder.makeFolder(QStringLiteral("b"));
    EXPECT_EQ(cli({QStringLiteral("channel"), QStringLiteral("add"), folder.write(QStringLiteral("f.jpg"))})
                  .exitCode,
              2);
    EXPECT_EQ(cli({QStringLiteral("channel"), QStringLiteral("add"), folder.filePath(QStringLiteral("gone"))})
                  .exitCode,
              2);
    ASSERT_EQ(cli({QStringLiteral("channel"), QStringLiteral("add"), a}).exitCode, 0);
    ASSERT_EQ(cli({QStringLiteral("channel"), QStringLiteral("add"), b, QStringLiteral("Studio")}).exitCode,
              0);
    EXPECT_EQ(cli({QStringLiteral("channel"), QStringLiteral("add"), a}).exitCode, 2);
    ASSERT_EQ(cli({QStringLiteral("channel"), QStringLiteral("move"), QStringLiteral("Studio"),
                   QStringLiteral("1")})
                  .exitCode,
              0);
    EXPECT_EQ(cli({QStringLiteral("channel"), QStringLiteral("remove"), QStringLiteral("nothing")}).exitCode,
              2);
    ASSERT_TRUE(QDir(a).removeRecursively());

    const CliResult listed = cli({QStringLiteral("channel"), QStringLiteral("list")});
    EXPECT_EQ(listed.exitCode, 0);
    const QStringList lines = listed.outText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 2);
    EXPECT_TRUE(lines.at(0).startsWith(QStringLiteral("Studio\t") + b + QStringLiteral("\tavailable")));
    EXPECT_TRUE(lines.at(1).startsWith(QStringLiteral("a\t") + a + QStringLiteral("\tfolder-missing")));
    ASSERT_EQ(cli({QStringLiteral("channel"), QStringLiteral("remove"), QStringLiteral("2")}).exitCode, 0);
    EXPECT_EQ(cli({QStringLiteral("channel"), QStringLiteral("list")}).outText().count(QLatin1Char('\n')), 1);
}

TEST(CliBundle, AnExportIntoAReadOnlyFolderIsRefusedBeforeAnythingIsCopied)
{
    if (runningAsRoot())
        GTEST_SKIP() << "root may write into a read-only folder";
    TempFolder shoot;
    shoot.writePicture(QStringLiteral("a.jpg"));
    ASSERT_EQ(cli({QStringLiteral("bundle"), QStringLiteral("new"), QStringLiteral("ro")}).exitCode, 0);
    ASSERT_EQ(cli({QStringLiteral("bundle"), QStringLiteral("add"), QStringLiteral("ro"),
                   shoot.filePath(QStringLiteral("a.jpg"))})
                  .exitCode,
              0);
    TempFolder out;
    QFile::setPermissions(out.path(), QFile::ReadOwner | QFile::ExeOwner);
    const CliResult result = cli({QStringLiteral("bundle"), QStringLiteral("export"), QStringLiteral("ro"),
                                  QStringLiteral("--to"), out.path()});
    QFile::setPermissions(out.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errText().contains(QStringLiteral("a read-only folder")))
        << result.errText().toStdString();
    EXPECT_TRUE(out.entries().isEmpty());
}
