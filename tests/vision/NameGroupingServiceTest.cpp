// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/NameGroupingService.h"

#include "platform/FolderAccessToken.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"
#include "tests/vision/VisionIndexFixture.h"

#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>
#include <unistd.h>

#include <random>

using namespace lumaro::vision;
using namespace lumaro::testing;

namespace {

const QString kGenerated = QStringLiteral("2024-05-01T10:00:00Z");

// Each file holds its own original name, so a test can tell that no picture was lost or swapped.
void writeFiles(TempFolder& folder, const QStringList& names)
{
    for (const QString& name : names)
        folder.write(name, name.toUtf8());
}

void writeIndex(TempFolder& folder, const std::vector<std::pair<QString, QString>>& marks)
{
    writeVisionIndex(folder, QStringLiteral("vision_index_0501100000_x.json"), kGenerated, marks);
}

NameWorkResult group(TempFolder& folder, const NameGroupingService& service = NameGroupingService())
{
    return service.groupFiles(folder.path(), visibleFileNames(folder));
}

NameWorkResult clean(TempFolder& folder, const NameGroupingService& service = NameGroupingService())
{
    return service.cleanPrefixes(folder.path(), visibleFileNames(folder));
}

} // namespace

TEST(NameGroupingService, GroupsByNameAndPeopleTypeAndPrefixesEveryFile)
{
    TempFolder folder;
    writeFiles(folder, {QStringLiteral("IMG_0001.CR2"), QStringLiteral("IMG_0001.jpg"), QStringLiteral("IMG_0002.jpg"),
                        QStringLiteral("IMG_0003.jpg"), QStringLiteral("微信图片_20240101.png")});
    writeIndex(folder, {{QStringLiteral("IMG_0002.jpg"), QStringLiteral("MARK_PEOPLE_PORTRAIT")},
                        {QStringLiteral("IMG_0003.jpg"), QStringLiteral("MARK_PEOPLE")},
                        {QStringLiteral("IMG_0001.jpg"), QStringLiteral("MARK_OUTDOOR")}});
    LogCapture log;
    const NameWorkResult result = group(folder);
    EXPECT_EQ(result.outcome, NameWorkOutcome::completed);
    EXPECT_EQ(result.groupCount, 4);
    EXPECT_EQ(visibleFileNames(folder),
              (QStringList{QStringLiteral("_G1_IMG_0001.CR2"), QStringLiteral("_G2_IMG_0001.jpg"),
                           QStringLiteral("_G3_IMG_0002.jpg"), QStringLiteral("_G3_IMG_0003.jpg"),
                           QStringLiteral("_G4_微信图片_20240101.png")}));
    EXPECT_EQ(folder.read(QStringLiteral("_G3_IMG_0003.jpg")), QByteArrayLiteral("IMG_0003.jpg"));
    EXPECT_TRUE(log.contains(QStringLiteral("EDIT1_NAMEWORK - 从 Vision 索引加载到 3 个 MARK 标签（共 3 条记录）")));
    EXPECT_TRUE(log.contains(QStringLiteral("EDIT1_NAMEWORK - 过滤后剩余 5 个未处理文件（已跳过 0 个已处理文件）")));
    EXPECT_EQ(result.message, QStringLiteral("分组完成: 4 个组，5 个文件已重命名"));
}

TEST(NameGroupingService, WithoutAVisionIndexStopsAfterTheAdvice)
{
    TempFolder folder;
    writeFiles(folder, {QStringLiteral("IMG_0001.jpg")});
    LogCapture log;
    const NameWorkResult result = group(folder);
    EXPECT_EQ(result.outcome, NameWorkOutcome::missingIndex);
    EXPECT_EQ(log.lines(),
              (QStringList{QStringLiteral("EDIT1_NAMEWORK - 未找到 Vision 索引数据"),
                           QStringLiteral("EDIT1_NAMEWORK - 索引文件路径应该是: ") + folder.path()
                               + QStringLiteral("/_index/vision_index_*.json"),
                           QStringLiteral("EDIT1_NAMEWORK - 建议: 请先为当前文件夹生成 Vision 索引，然后再进行文件名分组")}));
    EXPECT_EQ(visibleFileNames(folder), QStringList{QStringLiteral("IMG_0001.jpg")});
}

TEST(NameGroupingService, AnAlreadyGroupedFileIsNeverGroupedAgain)
{
    TempFolder folder;
    writeFiles(folder, {QStringLiteral("_G3_IMG_0001.jpg"), QStringLiteral("IMG_0002.jpg")});
    writeIndex(folder, {});
    LogCapture log;
    group(folder);
    EXPECT_TRUE(log.contains(QStringLiteral("EDIT1_NAMEWORK - 过滤后剩余 1 个未处理文件（已跳过 1 个已处理文件）")));
    EXPECT_EQ(visibleFileNames(folder), (QStringList{QStringLiteral("_G1_IMG_0002.jpg"), QStringLiteral("_G3_IMG_0001.jpg")}));
}

TEST(NameGroupingService, GroupingTwiceChangesNothingTheSecondTime)
{
    TempFolder folder;
    writeFiles(folder, {QStringLiteral("a 1.jpg"), QStringLiteral("a 2.jpg"), QStringLiteral("b.png")});
    writeIndex(folder, {});
    ASSERT_EQ(group(folder).renames.size(), 3);
    const QStringList once = visibleFileNames(folder);
    const NameWorkResult second = group(folder);
    EXPECT_EQ(second.outcome, NameWorkOutcome::nothingToDo);
    EXPECT_EQ(second.message, QStringLiteral("所有文件已经处理过，或没有可处理的文件"));
    EXPECT_EQ(visibleFileNames(folder), once);
}

TEST(NameGroupingService, AnEmptyFolderHasNothingToGroup)
{
    TempFolder folder;
    writeIndex(folder, {});
    EXPECT_EQ(group(folder).message, QStringLiteral("目录中没有找到文件"));
}

TEST(NameGroupingService, ATakenTargetIsSkippedAndNeverOverwritten)
{
    TempFolder folder;
    writeFiles(folder, {QStringLiteral("IMG_0001.jpg"), QStringLiteral("IMG_0002.jpg")});
    // Grouped before and since renamed back by hand would clash; here a stranger already took the name.
    folder.write(QStringLiteral("_G1_IMG_0002.jpg"), "someone else's picture");
    writeIndex(folder, {});
    LogCapture log;
    const NameWorkResult result = group(folder);
    EXPECT_TRUE(log.contains(QStringLiteral("文件已存在，跳过: _G1_IMG_0002.jpg")));
    EXPECT_EQ(result.skipped, QStringList{QStringLiteral("IMG_0002.jpg")});
    EXPECT_TRUE(result.leftFilesUnrenamed());
    EXPECT_EQ(folder.read(QStringLiteral("_G1_IMG_0002.jpg")), QByteArrayLiteral("someone else's picture"));
    EXPECT_EQ(folder.read(QStringLiteral("IMG_0002.jpg")), QByteArrayLiteral("IMG_0002.jpg"));
    EXPECT_EQ(folder.read(QStringLiteral("_G1_IMG_0001.jpg")), QByteArrayLiteral("IMG_0001.jpg"));
}

TEST(NameGroupingService, WhenEveryRenameFailsNothingIsLostAndEachFailureIsReported)
{
    TempFolder folder;
    const QStringList names{QStringLiteral("IMG_0001.jpg"), QStringLiteral("IMG_0002.jpg"), QStringLiteral("x.png")};
    writeFiles(folder, names);
    writeIndex(folder, {});
    const NameGroupingService readOnly([](const QString&, const QString&, QString* error) {
        *error = QStringLiteral("Permission denied");
        return false;
    });
    LogCapture log;
    const NameWorkResult result = group(folder, readOnly);
    EXPECT_EQ(result.failures.size(), 3);
    EXPECT_TRUE(result.renames.isEmpty());
    EXPECT_TRUE(result.message.startsWith(QStringLiteral("部分文件重命名失败: IMG_0001.jpg -> _G1_IMG_0001.jpg: Permission denied")));
    EXPECT_EQ(log.countStartingWith(QStringLiteral("重命名失败: ")), 3);
    EXPECT_EQ(visibleFileNames(folder), names);

    folder.write(QStringLiteral("_G1_a.jpg"));
    const NameWorkResult cleaned = clean(folder, readOnly);
    EXPECT_TRUE(cleaned.message.startsWith(QStringLiteral("部分文件清理失败: ")));
    EXPECT_EQ(log.countStartingWith(QStringLiteral("清理前缀失败: ")), 1);
    EXPECT_TRUE(folder.exists(QStringLiteral("_G1_a.jpg")));
}

TEST(NameGroupingService, AReadOnlyFolderLeavesEveryFileInPlace)
{
    if (geteuid() == 0)
        GTEST_SKIP() << "root may rename in a read-only folder; the injected failure above covers this case";
    TempFolder folder;
    writeFiles(folder, {QStringLiteral("IMG_0001.jpg"), QStringLiteral("IMG_0002.jpg")});
    writeIndex(folder, {});
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::ExeOwner);
    const NameWorkResult result = group(folder);
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_EQ(result.failures.size(), 2);
    EXPECT_EQ(visibleFileNames(folder), (QStringList{QStringLiteral("IMG_0001.jpg"), QStringLiteral("IMG_0002.jpg")}));
}

TEST(NameGroupingService, CleanSkipsANameThatWouldBeEmptyAndSaysWhenThereIsNothingToClean)
{
    TempFolder folder;
    writeFiles(folder, {QStringLiteral("_G12_"), QStringLiteral("_G01_a b.jpg"), QStringLiteral("plain.jpg")});
    LogCapture log;
    const NameWorkResult result = clean(folder);
    EXPECT_TRUE(log.contains(QStringLiteral("EDIT1_NAMEWORK - 移除前缀后文件名为空，跳过: _G12_")));
    EXPECT_TRUE(log.contains(QStringLiteral("EDIT1_NAMEWORK - 找到 2 个包含分类前缀的文件")));
    EXPECT_EQ(result.skipped, QStringList{QStringLiteral("_G12_")});
    EXPECT_EQ(visibleFileNames(folder), (QStringList{QStringLiteral("_G12_"), QStringLiteral("a b.jpg"), QStringLiteral("plain.jpg")}));

    TempFolder unprefixed;
    writeFiles(unprefixed, {QStringLiteral("plain.jpg")});
    const NameWorkResult nothing = clean(unprefixed);
    EXPECT_EQ(nothing.outcome, NameWorkOutcome::nothingToDo);
    EXPECT_EQ(nothing.message, QStringLiteral("没有找到包含分类前缀的文件"));
}

TEST(NameGroupingService, CleanNeverGivesANameThatStartsWithADot)
{
    TempFolder folder;
    writeFiles(folder, {QStringLiteral("_G12_.jpg"), QStringLiteral("_G01_a.jpg")});
    const NameWorkResult result = clean(folder);
    EXPECT_EQ(result.skipped, QStringList{QStringLiteral("_G12_.jpg")});
    EXPECT_FALSE(QFileInfo::exists(folder.filePath(QStringLiteral(".jpg"))));
    EXPECT_TRUE(QFileInfo::exists(folder.filePath(QStringLiteral("_G12_.jpg"))));
    EXPECT_TRUE(QFileInfo::exists(folder.filePath(QStringLiteral("a.jpg"))));
}

TEST(NameGroupingService, CleanNeverMergesTwoFilesIntoOneName)
{
    TempFolder folder;
    writeFiles(folder, {QStringLiteral("_G1_a.jpg"), QStringLiteral("_G2_a.jpg")});
    const NameWorkResult result = clean(folder);
    EXPECT_EQ(result.renames.size(), 1);
    EXPECT_EQ(result.skipped, QStringList{QStringLiteral("_G2_a.jpg")});
    EXPECT_EQ(folder.read(QStringLiteral("a.jpg")), QByteArrayLiteral("_G1_a.jpg"));
    EXPECT_EQ(folder.read(QStringLiteral("_G2_a.jpg")), QByteArrayLiteral("_G2_a.jpg"));
}

TEST(NameGroupingService, ADryRunPlansTheRenamesAndTouchesNothing)
{
    TempFolder folder;
    writeFiles(folder, {QStringLiteral("IMG_0001.jpg"), QStringLiteral("IMG_0002.jpg")});
    writeIndex(folder, {});
    NameWorkOptions options;
    options.dryRun = true;
    const NameWorkResult result = NameGroupingService().groupFiles(folder.path(), visibleFileNames(folder), options);
    ASSERT_EQ(result.renames.size(), 2);
    EXPECT_EQ(result.renames.at(1).to, QStringLiteral("_G1_IMG_0002.jpg"));
    EXPECT_EQ(visibleFileNames(folder), (QStringList{QStringLiteral("IMG_0001.jpg"), QStringLiteral("IMG_0002.jpg")}));
}

TEST(NameGroupingService, AFolderTokenThatWontResolveEndsTheTask)
{
    TempFolder folder;
    NameWorkOptions options;
    options.folderToken = QByteArrayLiteral("not a token");
    const NameWorkResult result = NameGroupingService().cleanPrefixes(folder.path(), {}, options);
    EXPECT_EQ(result.outcome, NameWorkOutcome::folderUnavailable);
    EXPECT_TRUE(result.message.startsWith(QStringLiteral("解析书签数据失败: ")));

    writeFiles(folder, {QStringLiteral("_G1_a.jpg")});
    options.folderToken = *lumaro::platform::FolderAccessToken::create(folder.path());
    EXPECT_EQ(NameGroupingService().cleanPrefixes(QStringLiteral("/elsewhere"), {QStringLiteral("_G1_a.jpg")}, options)
                  .renames.size(),
              1);
    EXPECT_TRUE(folder.exists(QStringLiteral("a.jpg")));
}

TEST(NameGroupingService, NamesThatAreNotPlainNamesAreNeverRenamed)
{
    TempFolder folder;
    folder.makeFolder(QStringLiteral("sub"));
    writeFiles(folder, {QStringLiteral("sub/x.jpg")});
    writeIndex(folder, {});
    const NameWorkResult result = NameGroupingService().groupFiles(
        folder.path(), {QStringLiteral("sub/x.jpg"), QStringLiteral(".."), QStringLiteral(".")});
    EXPECT_EQ(result.message, QStringLiteral("目录中没有找到文件"));
    EXPECT_TRUE(folder.exists(QStringLiteral("sub/x.jpg")));
}

// Group then clean gives back exactly the names the folder had, whatever the names and marks.
TEST(NameGroupingService, GroupThenCleanIsTheIdentityOverRandomNames)
{
    std::mt19937 random(20240501);
    const QStringList stems{QStringLiteral("IMG_"), QStringLiteral("DSC"), QStringLiteral("微信图片_"),
                            QStringLiteral("my trip "), QStringLiteral("G"), QStringLiteral("_G"),
                            QStringLiteral("1"), QStringLiteral("Été-"), QStringLiteral("")};
    const QStringList extensions{QStringLiteral(".jpg"), QStringLiteral(".JPG"), QStringLiteral(".CR2"),
                                 QStringLiteral(".png"), QStringLiteral("")};
    const QStringList marks{QStringLiteral("MARK_PEOPLE"), QStringLiteral("MARK_OUTDOOR"), QString(),
                            QStringLiteral("MARK_PEOPLE_PORTRAIT")};
    for (int round = 0; round < 20; ++round) {
        TempFolder folder;
        std::vector<std::pair<QString, QString>> index;
        const int count = 1 + int(random() % 40);
        for (int i = 0; i < count; ++i) {
            QString name = stems.at(random() % stems.size()) + QString::number(random() % 3000)
                + extensions.at(random() % extensions.size());
            if (name.startsWith(QLatin1Char('.')) || folder.exists(name))
                continue;
            folder.write(name, name.toUtf8());
            index.emplace_back(name, marks.at(random() % marks.size()));
        }
        writeIndex(folder, index);
        const QStringList before = visibleFileNames(folder);
        const NameWorkResult grouped = group(folder);
        ASSERT_FALSE(grouped.leftFilesUnrenamed()) << grouped.message.toStdString();
        for (const QString& name : visibleFileNames(folder))
            ASSERT_TRUE(name.startsWith(QStringLiteral("_G"))) << name.toStdString();
        ASSERT_FALSE(clean(folder).leftFilesUnrenamed());
        ASSERT_EQ(visibleFileNames(folder), before) << "round " << round;
        for (const QString& name : before)
            ASSERT_EQ(folder.read(name), name.toUtf8());
    }
}

TEST(NameGroupingService, SidecarsTakeTheirPicturesNamesThereAndBack)
{
    TempFolder folder;
    const QStringList pictures{QStringLiteral("IMG_0001.CR2"), QStringLiteral("IMG_0001.jpg"),
                               QStringLiteral("IMG_0002.jpg")};
    writeFiles(folder,
               pictures + QStringList{QStringLiteral("IMG_0001.xmp"), QStringLiteral("IMG_0002.jpg.xmp")});
    writeIndex(folder, {});
    const NameGroupingService service;
    service.groupFiles(folder.path(), pictures);
    // The pair's shared sidecar stays until its last picture is renamed, and goes with that one.
    EXPECT_EQ(visibleFileNames(folder),
              (QStringList{QStringLiteral("_G1_IMG_0001.CR2"), QStringLiteral("_G2_IMG_0001.jpg"),
                           QStringLiteral("_G2_IMG_0001.xmp"), QStringLiteral("_G2_IMG_0002.jpg"),
                           QStringLiteral("_G2_IMG_0002.jpg.xmp")}));
    EXPECT_EQ(folder.read(QStringLiteral("_G2_IMG_0002.jpg.xmp")), QByteArrayLiteral("IMG_0002.jpg.xmp"));
    service.cleanPrefixes(folder.path(),
                          {QStringLiteral("_G1_IMG_0001.CR2"), QStringLiteral("_G2_IMG_0001.jpg"),
                           QStringLiteral("_G2_IMG_0002.jpg")});
    EXPECT_EQ(visibleFileNames(folder),
              (QStringList{QStringLiteral("IMG_0001.CR2"), QStringLiteral("IMG_0001.jpg"),
                           QStringLiteral("IMG_0001.xmp"), QStringLiteral("IMG_0002.jpg"),
                           QStringLiteral("IMG_0002.jpg.xmp")}));
}
