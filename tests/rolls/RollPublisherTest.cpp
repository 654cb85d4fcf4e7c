// SPDX-License-Identifier: GPL-3.0-or-later
// Publishing to real WebDAV and SFTP servers: what lands online, what a second publish sends and removes,
// refusals before anything is sent, a server gone mid-way, bad credentials, unpublishing.
#include "rolls/RollPublisher.h"

#include "platform/metadata/LocationTags.h"
#include "tests/report/ShootPictures.h"
#include "tests/rolls/RcloneServer.h"
#include "tests/support/TempFolder.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QUrl>

#include <atomic>

#include <signal.h>

#include "platform/files/FileNameCodec.h"

#include <gtest/gtest.h>

using namespace lumaro::rolls;
using lumaro::testing::RcloneServer;
using lumaro::testing::TempFolder;

namespace {

const lumaro::testing::ExifTags kShotInParis{
    {QStringLiteral("Exif.GPSInfo.GPSLatitudeRef"), QStringLiteral("N")},
    {QStringLiteral("Exif.GPSInfo.GPSLatitude"), QStringLiteral("48/1 51/1 24/1")}};

struct Store
{
    RcloneServer::Protocol protocol;
    const char* name;
    const char* refusedSignIn; // what the server's refusal of a wrong password says
};

class RollPublish : public ::testing::TestWithParam<Store>
{
protected:
    void SetUp() override
    {
        if (!lumaro::platform::Rclone::isInstalled())
            GTEST_SKIP() << "rclone is not installed";
        m_space.makeFolder(QStringLiteral("remote"));
        m_server = std::make_unique<RcloneServer>(m_space.filePath(QStringLiteral("remote")), QString(),
                                                  QString(), GetParam().protocol);
        ASSERT_TRUE(m_server->start());
        for (const char* name : {"IMG_0001.JPG", "IMG_0002.JPG", "a b & c.jpg"})
            lumaro::testing::writeShot(m_shoot, QString::fromUtf8(name), kShotInParis, {900, 600});
    }

    PublishOutcome publish(RollRequest request = {}) const
    {
        request.folder = m_shoot.path();
        if (request.destination.isEmpty())
            request.destination = QStringLiteral("dav:albums");
        return RollPublisher(lumaro::platform::Rclone(m_server->remote(QStringLiteral("dav"))))
            .publish(request);
    }
    // Every file of the published roll on the server's disk, by its path inside the roll.
    QStringList online() const
    {
        QStringList files;
        const QString roll =
            m_space.filePath(QStringLiteral("remote/albums/") + QDir(m_shoot.path()).dirName());
        QDirIterator it(roll, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        while (it.hasNext())
            files << QDir(roll).relativeFilePath(it.next());
        files.sort();
        return files;
    }
    QString onlinePath(const QString& relative) const
    {
        return m_space.filePath(QStringLiteral("remote/albums/") + QDir(m_shoot.path()).dirName() +
                                QLatin1Char('/') + relative);
    }

    TempFolder m_space;
    TempFolder m_shoot;
    std::unique_ptr<RcloneServer> m_server;
};

TEST_P(RollPublish, PutsEveryPictureOnlineWithoutItsLocationAndRecordsTheRoll)
{
    RollRequest request;
    request.options.originals = true;
    const PublishOutcome outcome = publish(request);

    ASSERT_EQ(outcome.status, PublishStatus::published) << outcome.message.toStdString();
    const QStringList files = online();
    EXPECT_EQ(files.filter(QRegularExpression(QStringLiteral("^p/.*\\.jpg$"))).size(), 3);
    EXPECT_EQ(files.filter(QRegularExpression(QStringLiteral("^t/.*\\.jpg$"))).size(), 3);
    EXPECT_EQ(files.filter(QRegularExpression(QStringLiteral("^o/"))).size(), 3);
    EXPECT_TRUE(files.contains(QStringLiteral("index.html")));
    ASSERT_TRUE(lumaro::platform::LocationTags::has(m_shoot.filePath(QStringLiteral("IMG_0001.JPG"))));
    for (const QString& file : files)
        EXPECT_FALSE(lumaro::platform::LocationTags::has(onlinePath(file))) << file.toStdString();
    EXPECT_EQ(QImage(onlinePath(files.filter(QStringLiteral("p/")).constFirst())).size(), QSize(900, 600));

    const auto record = RollStore::find(QDir(m_shoot.path()).dirName());
    ASSERT_TRUE(record);
    EXPECT_EQ(record->pictures, 3);
    EXPECT_EQ(record->target, QStringLiteral("dav:albums/") + QDir(m_shoot.path()).dirName());
}

TEST_P(RollPublish, ItsPageShowsThePicturesInABrowser)
{
    const QString chromium = QStandardPaths::findExecutable(QStringLiteral("chromium"));
    if (chromium.isEmpty())
        GTEST_SKIP() << "chromium is not installed";
    ASSERT_EQ(publish().status, PublishStatus::published);
    const QString shot = m_space.filePath(QStringLiteral("page.png"));
    QProcess browser;
    // As root a browser refuses its sandbox; the page is our own, read from disk.
    browser.start(chromium, {QStringLiteral("--headless"), QStringLiteral("--no-sandbox"),
                             QStringLiteral("--disable-gpu"), QStringLiteral("--window-size=1200,900"),
                             QStringLiteral("--screenshot=") + shot,
                             QUrl::fromLocalFile(onlinePath(QStringLiteral("index.html"))).toString()});
    ASSERT_TRUE(browser.waitForFinished(120000));
    const QImage page(shot);
    ASSERT_FALSE(page.isNull()) << browser.readAllStandardError().toStdString();
    // The shoot's pictures are dark cyan: a page whose thumbnails did not load shows none of it.
    int cyan = 0;
    for (int y = 0; y < page.height(); ++y)
        for (int x = 0; x < page.width(); ++x) {
            const QColor pixel = page.pixelColor(x, y);
            cyan +=
                pixel.red() < 30 && std::abs(pixel.green() - 128) < 20 && std::abs(pixel.blue() - 128) < 20;
        }
    EXPECT_GT(cyan, page.width() * page.height() / 20) << "thumbnails shown: " << cyan << " pixels";
}

TEST_P(RollPublish, KeepsTheLocationOnlyWhenAsked)
{
    RollRequest request;
    request.options.keepLocation = true;
    ASSERT_EQ(publish(request).status, PublishStatus::published);
    for (const QString& file : online().filter(QStringLiteral("p/")))
        EXPECT_TRUE(lumaro::platform::LocationTags::has(onlinePath(file))) << file.toStdString();
}

TEST_P(RollPublish, AgainSendsOnlyWhatChangedAndRemovesWhatTheFolderLost)
{
    ASSERT_EQ(publish().status, PublishStatus::published);
    const QStringList before = online();
    const QString kept = before.filter(QStringLiteral("p/IMG_0002")).constFirst();
    const QDateTime keptSent = QFileInfo(onlinePath(kept)).lastModified();

    ASSERT_TRUE(QFile::remove(m_shoot.filePath(QStringLiteral("IMG_0001.JPG"))));
    m_shoot.writePicture(QStringLiteral("IMG_0003.JPG"), {800, 800});
    // An edit of the same size: some stores compare only sizes, and it must still go online.
    const QString edited = m_shoot.filePath(QStringLiteral("a b & c.jpg"));
    QFile::remove(edited);
    lumaro::testing::writeShot(m_shoot, QStringLiteral("a b & c.jpg"), kShotInParis, {900, 600});
    QFile(edited).setFileTime(QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime);

    const PublishOutcome again = publish();

    ASSERT_EQ(again.status, PublishStatus::published) << again.message.toStdString();
    const QStringList after = online();
    EXPECT_TRUE(after.filter(QStringLiteral("IMG_0001")).isEmpty());
    EXPECT_EQ(after.filter(QStringLiteral("IMG_0003")).size(), 2);
    EXPECT_TRUE(after.contains(kept));
    EXPECT_EQ(QFileInfo(onlinePath(kept)).lastModified(), keptSent) << "an unchanged picture was sent again";
    const QStringList editedOnline = after.filter(QStringLiteral("p/a_b___c"));
    ASSERT_EQ(editedOnline.size(), 1);
    EXPECT_FALSE(before.contains(editedOnline.constFirst()));
    const QString page =
        QString::fromUtf8(lumaro::platform::FileNameCodec::readAll(onlinePath(QStringLiteral("index.html"))));
    for (const QString& preview : after.filter(QStringLiteral("p/")))
        EXPECT_TRUE(page.contains(preview)) << preview.toStdString();
    EXPECT_FALSE(page.contains(QStringLiteral("IMG_0001")));
}

TEST_P(RollPublish, OverItsBudgetIsRefusedBeforeAnythingIsSent)
{
    RollRequest request;
    request.budgetBytes = 1000;
    const PublishOutcome outcome = publish(request);
    EXPECT_EQ(outcome.status, PublishStatus::refused);
    EXPECT_TRUE(outcome.message.contains(QStringLiteral("budget"))) << outcome.message.toStdString();
    EXPECT_TRUE(online().isEmpty());
    EXPECT_FALSE(RollStore::find(QDir(m_shoot.path()).dirName()));
}

TEST_P(RollPublish, AServerGoneMidwayLeavesNoPageAndTheNextPublishCompletesOnce)
{
    m_server->stop();
    const PublishOutcome broken = publish();
    EXPECT_EQ(broken.status, PublishStatus::failed);
    EXPECT_FALSE(broken.message.isEmpty());
    EXPECT_FALSE(online().contains(QStringLiteral("index.html")));

    ASSERT_TRUE(m_server->start());
    const PublishOutcome again = publish();
    ASSERT_EQ(again.status, PublishStatus::published) << again.message.toStdString();
    EXPECT_EQ(online().size(), 3 * 2 + 1);
}

TEST_P(RollPublish, AServerKilledMidUploadLeavesNoPageAndTheNextPublishCompletesOnce)
{
    // Noise does not compress: originals big enough that a slowed link is still sending when the server dies.
    for (const char* name : {"BIG_1.jpg", "BIG_2.jpg"}) {
        QImage noise(1600, 1200, QImage::Format_RGB32);
        for (int y = 0; y < noise.height(); ++y)
            for (int x = 0; x < noise.width(); ++x)
                noise.setPixel(x, y, qRgb((x * 7919 + y * 104729) % 251, (x * y) % 241, (x + 3 * y) % 239));
        ASSERT_TRUE(noise.save(m_shoot.filePath(QString::fromUtf8(name)), "JPEG", 95));
    }
    const auto rclone = lumaro::platform::Rclone(m_server->remote(QStringLiteral("dav")));
    const auto slowed = rclone.with({{QStringLiteral("RCLONE_BWLIMIT"), QStringLiteral("400k")}})
                            .withStallLimit(std::chrono::seconds(3));
    RollRequest request;
    request.folder = m_shoot.path();
    request.destination = QStringLiteral("dav:albums");
    request.options.originals = true;
    std::atomic_bool killed = false;
    const PublishOutcome broken = RollPublisher(slowed).publish(request, [&](const RollProgress& progress) {
        if (progress.step == RollProgress::Step::sending && progress.done > 0 && !killed.exchange(true))
            ::kill(pid_t(m_server->processId()), SIGKILL);
    });
    ASSERT_TRUE(killed) << "the upload ended before the server could be killed";
    EXPECT_EQ(broken.status, PublishStatus::failed) << broken.message.toStdString();
    EXPECT_TRUE(broken.message.contains(QStringLiteral("stopped answering"))) << broken.message.toStdString();
    EXPECT_FALSE(online().contains(QStringLiteral("index.html")));

    m_server->stop();
    ASSERT_TRUE(m_server->start());
    const PublishOutcome again = RollPublisher(rclone).publish(request);
    ASSERT_EQ(again.status, PublishStatus::published) << again.message.toStdString();
    EXPECT_EQ(online().size(), 5 * 3 + 1) << online().join(QLatin1Char(' ')).toStdString();
}

TEST_P(RollPublish, WrongCredentialsFailWithTheServersReason)
{
    m_server->stop();
    m_server =
        std::make_unique<RcloneServer>(m_space.filePath(QStringLiteral("remote")), QStringLiteral("ann"),
                                       QStringLiteral("secret"), GetParam().protocol);
    ASSERT_TRUE(m_server->start());
    const PublishOutcome outcome = publish();
    EXPECT_EQ(outcome.status, PublishStatus::failed);
    EXPECT_TRUE(outcome.message.contains(QRegularExpression(QString::fromUtf8(GetParam().refusedSignIn),
                                                            QRegularExpression::CaseInsensitiveOption)))
        << outcome.message.toStdString();
    EXPECT_TRUE(online().isEmpty());
}

TEST_P(RollPublish, UnpublishRemovesTheRollsFolderAndRecordOnly)
{
    m_space.write(QStringLiteral("remote/albums/someone-else/x.jpg"));
    ASSERT_EQ(publish().status, PublishStatus::published);
    const auto roll = RollStore::find(QDir(m_shoot.path()).dirName());
    ASSERT_TRUE(roll);

    QString error;
    ASSERT_TRUE(RollPublisher(lumaro::platform::Rclone(m_server->remote(QStringLiteral("dav"))))
                    .unpublish(*roll, &error))
        << error.toStdString();
    EXPECT_TRUE(online().isEmpty());
    EXPECT_TRUE(m_space.exists(QStringLiteral("remote/albums/someone-else/x.jpg")));
    EXPECT_FALSE(RollStore::find(roll->target));
    EXPECT_EQ(m_shoot.entries().size(), 3);
}

INSTANTIATE_TEST_SUITE_P(Stores, RollPublish,
                         ::testing::Values(Store{RcloneServer::Protocol::webdav, "WebDav", "401|unauthori"},
                                           Store{RcloneServer::Protocol::sftp, "Sftp",
                                                 "unable to authenticate"}),
                         [](const ::testing::TestParamInfo<Store>& info) { return info.param.name; });

struct DestinationCase
{
    const char* destination;
    const char* name;
    const char* target; // empty: refused
};

TEST(RollTarget, IsTheRollsOwnFolderUnderARemote)
{
    const DestinationCase cases[] = {
        {"s3:bucket/albums", "shoot", "s3:bucket/albums/shoot"},
        {"dav:", "shoot", "dav:shoot"},
        {"dav:albums/", "婚礼 2026", "dav:albums/婚礼 2026"},
        {"/home/ann/albums", "shoot", ""},
        {"dav:albums", "../escape", ""},
        {"dav:albums", "..", ""},
        {"dav:albums", "", ""},
    };
    for (const DestinationCase& c : cases) {
        QString problem;
        const auto target =
            RollPublisher::targetOf(QString::fromUtf8(c.destination), QString::fromUtf8(c.name), &problem);
        EXPECT_EQ(target.value_or(QString()), QString::fromUtf8(c.target)) << c.destination << " " << c.name;
        EXPECT_EQ(problem.isEmpty(), bool(target)) << c.destination;
    }
}

} // namespace
