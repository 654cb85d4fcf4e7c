// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/CardImportService.h"
#include "cards/ImportLocation.h"
#include "cards/PairingFolderMemory.h"
#include "cards/PairingSession.h"
#include "platform/fakes/MemorySettingsStore.h"
#include "platform/volumes/RemovableVolumeMonitor.h"
#include "tests/cards/FolderTrash.h"
#include "tests/support/LogCapture.h"
#include "tests/support/TempFolder.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace lumaro::cards;
using namespace lumaro::testing;
using lumaro::platform::MemorySettingsStore;

namespace {

// Points `session` at `shoot`/jpg and `shoot`/raw.
void pointAt(PairingSession& session, const TempFolder& shoot)
{
    session.setJpgFolder(shoot.filePath(QStringLiteral("jpg")));
    session.setRawFolder(shoot.filePath(QStringLiteral("raw")));
}

} // namespace

TEST(PairingSession, RemembersTheChosenFoldersUnderTheirKeys)
{
    MemorySettingsStore settings;
    {
        PairingSession session(settings, nullptr);
        session.setJpgFolder(QStringLiteral("/shoot/jpg"));
        session.setRawFolder(QStringLiteral("/shoot/raw"));
    }
    EXPECT_EQ(settings.string(QStringLiteral("CleanView_JPG_LastLocation")), QStringLiteral("/shoot/jpg"));
    EXPECT_EQ(settings.string(QStringLiteral("CleanView_RAW_LastLocation")), QStringLiteral("/shoot/raw"));
    PairingSession later(settings, nullptr);
    LogCapture log;
    later.loadRememberedFolders();
    EXPECT_EQ(later.jpgFolderLastLocation(), QStringLiteral("/shoot/jpg"));
    EXPECT_EQ(later.rawFolderLastLocation(), QStringLiteral("/shoot/raw"));
    EXPECT_EQ(log.countStartingWith(QStringLiteral("📁 加载位置记忆:")), 1);
}

TEST(PairingSession, AnalysingWithoutFoldersAsksForThem)
{
    MemorySettingsStore settings;
    PairingSession session(settings, nullptr);
    EXPECT_FALSE(session.analyze());
    EXPECT_EQ(session.alertMessage(), QStringLiteral("请先选择JPG和RAW文件夹"));
}

TEST(PairingSession, AnalysesThenCleansOffTheMainThreadAndKeepsTheHistory)
{
    TempFolder shoot;
    TempFolder trashFolder;
    for (int i = 0; i < 4; ++i) {
        shoot.write(QStringLiteral("jpg/IMG_%1.JPG").arg(i));
        shoot.write(QStringLiteral("raw/IMG_%1.CR3").arg(i));
    }
    shoot.write(QStringLiteral("raw/IMG_9.CR3"), QByteArray(1'500'000, 'r'));
    MemorySettingsStore settings;
    FolderTrash trash(trashFolder.path());
    PairingSession session(settings, &trash);
    pointAt(session, shoot);

    ASSERT_TRUE(session.analyze());
    EXPECT_TRUE(session.isAnalyzing());
    ASSERT_TRUE(waitUntil([&] { return session.analysisResults().isAnalyzed; }));
    EXPECT_TRUE(session.cleanOffer().canClean());

    ASSERT_TRUE(session.clean());
    ASSERT_TRUE(waitUntil([&] { return !session.isBusy() && session.analysisResults().isAnalyzed; }));
    ASSERT_EQ(session.cleanResults().size(), 1);
    EXPECT_EQ(session.cleanResults().constFirst().cleanedFilesCount, 1);
    EXPECT_EQ(session.alertMessage(), QStringLiteral("清理完成！已删除 1 个冗余RAW文件，释放了 1.5 MB"));
    EXPECT_EQ(session.cleanOffer().kind, CleanOffer::Kind::nothingToClean)
        << "the analysis runs again after a clean";
}

TEST(PairingSession, AResultForFoldersChangedMeanwhileIsDropped)
{
    TempFolder shoot;
    shoot.write(QStringLiteral("jpg/a.JPG"));
    shoot.write(QStringLiteral("raw/a.CR3"));
    MemorySettingsStore settings;
    PairingSession session(settings, nullptr);
    pointAt(session, shoot);
    ASSERT_TRUE(session.analyze());
    session.setRawFolder(shoot.filePath(QStringLiteral("jpg")));
    ASSERT_TRUE(waitUntil([&] { return !session.isAnalyzing(); }));
    EXPECT_FALSE(session.analysisResults().isAnalyzed);
}

TEST(PairingSession, PicksIntoRawPick)
{
    TempFolder shoot;
    shoot.write(QStringLiteral("jpg/a.JPG"));
    shoot.write(QStringLiteral("raw/a.CR3"));
    MemorySettingsStore settings;
    PairingSession session(settings, nullptr);
    pointAt(session, shoot);
    ASSERT_TRUE(session.analyze());
    ASSERT_TRUE(waitUntil([&] { return session.analysisResults().isAnalyzed; }));
    ASSERT_TRUE(session.pick());
    ASSERT_TRUE(waitUntil([&] { return !session.isPicking(); }));
    EXPECT_EQ(session.lastPickFolderPath(), shoot.filePath(QStringLiteral("RAW_PICK")));
    EXPECT_TRUE(shoot.exists(QStringLiteral("RAW_PICK/a.CR3")));
}

TEST(CardImportService, ScansAndImportsWithProgressOnTheMainThread)
{
    TempFolder card;
    TempFolder work;
    card.write(QStringLiteral("DCIM/100CANON/IMG_1.JPG"), QByteArray(300'000, 'j'));
    card.write(QStringLiteral("DCIM/100CANON/MVI_2.MP4"), QByteArray(700'000, 'v'));
    CardImportService service;
    QSignalSpy scanned(&service, &CardImportService::scanned);
    service.scan(card.path());
    ASSERT_TRUE(waitUntil([&] { return scanned.count() == 1; }));
    const ImportData data = scanned.at(0).at(0).value<ImportData>();
    EXPECT_EQ(CardImportService::describe(data.newFiles),
              QStringLiteral("新文件信息：JPG 1，RAW 0，视频 1，共 2 个  ·  复制体量: 1 MB"));
    std::vector<double> progress;
    QObject::connect(&service, &CardImportService::changed,
                     [&] { progress.push_back(service.importProgress()); });

    ASSERT_TRUE(service.startImport(data, work.path()));
    EXPECT_FALSE(service.startImport(data, work.path())) << "one import at a time";
    ASSERT_TRUE(waitUntil([&] { return !service.isImporting(); }));

    EXPECT_EQ(service.importStatus(),
              QStringLiteral("导入的文件已保存到：") + work.filePath(QStringLiteral("roll01")));
    EXPECT_DOUBLE_EQ(service.importProgress(), 1.0);
    EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
    EXPECT_EQ(work.entries(QStringLiteral("roll01")),
              (QStringList{QStringLiteral("JPG"), QStringLiteral("VIDEO")}));
}

TEST(CardImportService, NoImportStartsWithoutALocationOrFiles)
{
    CardImportService service;
    ImportData data;
    data.newFiles.jpgFiles = {QStringLiteral("/card/a.JPG")};
    EXPECT_FALSE(service.startImport(data, QString()));
    EXPECT_FALSE(service.startImport(ImportData{}, QStringLiteral("/tmp")));
    EXPECT_EQ(CardImportService::describe(NewFileInfo{}), QStringLiteral("没有发现新文件需要导入"));
}

TEST(ImportLocation, DefaultsToLumaroInPicturesAndIsASetting)
{
    MemorySettingsStore settings;
    ImportLocation location(settings);
    EXPECT_TRUE(location.path().endsWith(QStringLiteral("/Lumaro")));
    location.setPath(QStringLiteral("/work/imports"));
    EXPECT_EQ(ImportLocation(settings).path(), QStringLiteral("/work/imports"));
}

TEST(RemovableVolumeMonitor, AnnouncesVolumesMountedAfterTheFirstLook)
{
    using lumaro::platform::MountedVolume;
    using lumaro::platform::RemovableVolumeMonitor;
    QList<MountedVolume> mounted{{QStringLiteral("/media/u/OLD"), QStringLiteral("OLD"), {}, {}}};
    RemovableVolumeMonitor monitor([&] { return mounted; });
    QSignalSpy added(&monitor, &RemovableVolumeMonitor::volumeMounted);
    QSignalSpy removed(&monitor, &RemovableVolumeMonitor::volumeUnmounted);

    monitor.poll();
    EXPECT_EQ(added.count(), 0) << "a card already there at start is known, not announced";
    mounted.append({QStringLiteral("/media/u/EOS_DIGITAL"), QStringLiteral("EOS_DIGITAL"), {}, {}});
    monitor.poll();
    monitor.poll();
    ASSERT_EQ(added.count(), 1);
    EXPECT_EQ(added.at(0).at(0).value<MountedVolume>().rootPath, QStringLiteral("/media/u/EOS_DIGITAL"));
    mounted.removeFirst();
    monitor.poll();
    ASSERT_EQ(removed.count(), 1);
    EXPECT_EQ(removed.at(0).at(0).toString(), QStringLiteral("/media/u/OLD"));
}

TEST(RemovableVolumeMonitor, CountsOnlyWhereDesktopsMountRemovableMedia)
{
    using lumaro::platform::RemovableVolumeMonitor;
    EXPECT_TRUE(RemovableVolumeMonitor::isRemovableMountPath(QStringLiteral("/media/anna/CANON_DC")));
    EXPECT_TRUE(RemovableVolumeMonitor::isRemovableMountPath(QStringLiteral("/run/media/anna/EOS_DIGITAL")));
    EXPECT_FALSE(RemovableVolumeMonitor::isRemovableMountPath(QStringLiteral("/")));
    EXPECT_FALSE(RemovableVolumeMonitor::isRemovableMountPath(QStringLiteral("/home")));
    EXPECT_FALSE(RemovableVolumeMonitor::isRemovableMountPath(QStringLiteral("/mediafiles/x")));
}
