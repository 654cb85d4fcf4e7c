// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli pose as a user runs it: bad arguments, no model installed, real photos, tags from the index.
#include "pose/PoseIndexFile.h"
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace lumaro::testing {
namespace {

// Points the model lookup at `folder` for the commands this test runs, and back when it ends.
class ModelsDir
{
public:
    explicit ModelsDir(const QString& folder) { qputenv("LUMARO_MODELS_DIR", QFile::encodeName(folder)); }
    ~ModelsDir() { qunsetenv("LUMARO_MODELS_DIR"); }
};

struct UsageCase
{
    const char* label;
    QStringList arguments;
    const char* message;
};

class PoseCommandUsage : public ::testing::TestWithParam<UsageCase>
{
};

TEST_P(PoseCommandUsage, RefusesBadArgumentsWithExitTwo)
{
    TempFolder folder;
    folder.makeFolder(QStringLiteral("a folder"));
    QStringList arguments{QStringLiteral("pose")};
    for (const QString& word : GetParam().arguments)
        arguments << (word.startsWith(u'-') ? word : folder.filePath(word));
    const CliResult result = runCli(arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errText().contains(QString::fromUtf8(GetParam().message)))
        << result.errText().toStdString();
    EXPECT_TRUE(result.out.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Cases, PoseCommandUsage,
                         ::testing::Values(UsageCase{"noPicture", {}, "IMAGE"},
                                           UsageCase{
                                               "missingFile", {QStringLiteral("gone.jpg")}, "no such file"},
                                           UsageCase{"folderAmongPictures",
                                                     {QStringLiteral("a folder"), QStringLiteral("p.jpg")},
                                                     "is a folder"},
                                           UsageCase{"unknownSortKey",
                                                     {QStringLiteral("--sort=size"), QStringLiteral("p.jpg")},
                                                     "--sort takes \"shot\""}),
                         [](const auto& info) { return std::string(info.param.label); });

TEST(PoseCommand, WithoutAModelSaysSoAndExitsOne)
{
    TempFolder folder;
    const QString picture = folder.writePicture(QStringLiteral("p.jpg"));
    ModelsDir models(folder.makeFolder(QStringLiteral("no models here")));
    const CliResult result = runCli({QStringLiteral("pose"), picture});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errText().contains(QStringLiteral("movenet_multipose_lightning_256.onnx")))
        << result.errText().toStdString();
}

class PoseCommandOnPhotos : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_models = sharedModelsDir();
        if (m_models.isEmpty())
            GTEST_SKIP() << "../shared/models is not there; the pose command needs its MultiPose file";
    }

    QString photo(const char* name) const
    {
        return m_models + QStringLiteral("/test-images/") + QString::fromLatin1(name);
    }

    QString m_models;
};

TEST_F(PoseCommandOnPhotos, PrintsVerdictsReasonsAndActionNames)
{
    ModelsDir models(m_models);
    const CliResult result =
        runCli({QStringLiteral("pose"), QStringLiteral("--quiet"), photo("basketball1.png")});
    ASSERT_EQ(result.exitCode, 0) << result.errText().toStdString();
    const QString out = result.outText();
    EXPECT_TRUE(out.contains(QStringLiteral(": 2 people, shot 全景 full\n")));
    EXPECT_TRUE(out.contains(QStringLiteral("level 1: POSE_STAND  side ")));
    EXPECT_TRUE(out.contains(QStringLiteral("A 高于 B，且向量位于向下 40.0° 锥内")));
    EXPECT_TRUE(out.contains(QStringLiteral("站立 Stand")));
}

TEST_F(PoseCommandOnPhotos, JsonCarriesJointsAndReadsTagsFromTheFolderIndex)
{
    ModelsDir models(m_models);
    TempFolder folder;
    const QString picture = folder.filePath(QStringLiteral("astro naut 宇航员.png"));
    ASSERT_TRUE(QFile::copy(photo("astronaut.png"), picture));
    folder.write(
        QStringLiteral("_index/vision_index_20240101_1.json"),
        QStringLiteral(
            R"({"results":[{"fileName":"astro naut 宇航员.png","objects":["Notebook"],"scene":["Notebook"]}]})")
            .toUtf8());
    const CliResult result =
        runCli({QStringLiteral("pose"), QStringLiteral("--json"), QStringLiteral("--quiet"), picture});
    ASSERT_EQ(result.exitCode, 0) << result.errText().toStdString();
    const QJsonArray pictures = QJsonDocument::fromJson(result.out).array();
    ASSERT_EQ(pictures.size(), 1);
    const QJsonObject entry = pictures.at(0).toObject();
    EXPECT_EQ(entry.value(QStringLiteral("visionTags")).toArray(), QJsonArray{QStringLiteral("Notebook")});
    const QJsonArray people = entry.value(QStringLiteral("people")).toArray();
    ASSERT_EQ(people.size(), 1);
    const QJsonObject person = people.at(0).toObject();
    // Head and shoulders only: no thighs, so level 1 is diverse, and the reading tag makes it lay & read.
    EXPECT_EQ(person.value(QStringLiteral("level1")).toObject().value(QStringLiteral("pose")).toString(),
              QStringLiteral("POSE_DIVERSE"));
    EXPECT_EQ(person.value(QStringLiteral("level2"))
                  .toObject()
                  .value(QStringLiteral("matchedCondition"))
                  .toString(),
              QStringLiteral("Vision Tag 包含 book"));
    EXPECT_EQ(person.value(QStringLiteral("actionName")).toString(), QStringLiteral("躺读 Lay & Read"));
    const QJsonObject eye =
        person.value(QStringLiteral("joints")).toObject().value(QStringLiteral("left_eye")).toObject();
    EXPECT_GT(eye.value(QStringLiteral("y")).toDouble(), 0.5)
        << "y grows upward: the eyes are in the upper half";
    EXPECT_TRUE(person.value(QStringLiteral("joints"))
                    .toObject()
                    .value(QStringLiteral("left_foot"))
                    .toObject()
                    .value(QStringLiteral("x"))
                    .isNull());
}

TEST_F(PoseCommandOnPhotos, ABrokenPictureIsCountedAndTheRestStillRun)
{
    ModelsDir models(m_models);
    TempFolder folder;
    const QString broken =
        folder.write(QStringLiteral("broken.jpg"), QByteArrayLiteral("\xff\xd8\xff not really"));
    const CliResult result =
        runCli({QStringLiteral("pose"), QStringLiteral("--quiet"), broken, photo("horses.jpg")});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errText().contains(QStringLiteral("broken.jpg: "))) << result.errText().toStdString();
    EXPECT_TRUE(result.outText().contains(QStringLiteral("horses.jpg: 0 people")));
}

TEST_F(PoseCommandOnPhotos, AFolderRunKeepsEveryPictureInItsOwnPoseIndex)
{
    ModelsDir models(m_models);
    TempFolder folder;
    ASSERT_TRUE(QFile::copy(photo("basketball1.png"), folder.filePath(QStringLiteral("b.png"))));
    ASSERT_TRUE(QFile::copy(photo("horses.jpg"), folder.filePath(QStringLiteral("h.jpg"))));
    folder.write(QStringLiteral("broken.jpg"), QByteArrayLiteral("\xff\xd8\xff not really"));
    TempFolder tiles;
    QStringList written;
    for (int run = 0; run < 2; ++run) {
        const CliResult result = runCli({QStringLiteral("pose"), QStringLiteral("--quiet"),
                                         QStringLiteral("--tiles=") + tiles.path(), folder.path()});
        EXPECT_EQ(result.exitCode, 1) << "the broken picture is counted";
        const QString out = result.outText();
        const qsizetype at = out.lastIndexOf(QStringLiteral("index: "));
        ASSERT_GE(at, 0) << out.toStdString();
        written << out.mid(at + 7).trimmed();
    }
    ASSERT_NE(written[0], written[1]) << "a second run in the same second never replaces the first";
    EXPECT_EQ(
        QDir(tiles.path()).entryList(QDir::Files, QDir::Name),
        (QStringList{QStringLiteral("b_person1.jpg"), QStringLiteral("b_person1_2.jpg"),
                     QStringLiteral("b_person2.jpg"), QStringLiteral("b_person2_2.jpg"),
                     QStringLiteral("pose_contact_sheet.jpg"), QStringLiteral("pose_contact_sheet_2.jpg")}));
    for (const QString& path : written) {
        EXPECT_TRUE(QFileInfo(path).fileName().startsWith(QStringLiteral("pose_index_")));
        QString error;
        const auto data = pose::PoseIndexFile::read(path, &error);
        ASSERT_TRUE(data) << error.toStdString();
        ASSERT_EQ(data->pictures.size(), 2u);
        EXPECT_EQ(data->pictures[0].fileName, QStringLiteral("b.png"));
        EXPECT_EQ(data->pictures[0].verdicts.size(), 2);
        EXPECT_EQ(data->pictures[0].shotSize, QStringLiteral("full"));
        EXPECT_TRUE(data->pictures[1].verdicts.isEmpty());
    }
}

TEST(PoseCommand, TilesIntoAFileAreRefused)
{
    TempFolder folder;
    const QString picture = folder.writePicture(QStringLiteral("p.jpg"));
    const CliResult result = runCli({QStringLiteral("pose"), QStringLiteral("--tiles"), picture, picture});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errText().contains(QStringLiteral("is a file, not a folder")))
        << result.errText().toStdString();
}

TEST(PoseCommand, AFileNamedIndexInTheFolderStopsTheRunBeforeAnyWork)
{
    TempFolder folder;
    folder.writePicture(QStringLiteral("p.jpg"));
    folder.write(QStringLiteral("_index"), QByteArrayLiteral("mine"));
    const CliResult result = runCli({QStringLiteral("pose"), folder.path()});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errText().contains(QStringLiteral("_index is in the way")))
        << result.errText().toStdString();
    QFile kept(folder.filePath(QStringLiteral("_index")));
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), QByteArrayLiteral("mine"));
}

} // namespace
} // namespace lumaro::testing
