// SPDX-License-Identifier: GPL-3.0-or-later
// Storage accounts against a real Secret Service: GNOME Keyring on a private session bus started here, so the
// user's own keyring is never touched. Skipped, with the reason, where neither can run.
#include "rolls/StorageAccounts.h"
#include "rolls/RollPublisher.h"

#include "platform/AppPaths.h"
#include "platform/cloud/SecretStore.h"
#include "tests/rolls/RcloneServer.h"
#include "tests/support/TempFolder.h"

#include <QDeadlineTimer>
#include <QDirIterator>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryFile>

#include <gtest/gtest.h>

#include <utility>

using namespace lumaro::rolls;
using lumaro::testing::TempFolder;

namespace {

class KeyringAccounts : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        const QString dbus = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
        const QString keyring = QStandardPaths::findExecutable(QStringLiteral("gnome-keyring-daemon"));
        if (dbus.isEmpty() || keyring.isEmpty()) {
            s_why = "dbus-daemon or gnome-keyring-daemon is not installed";
            return;
        }
        // A bus that starts no services on demand: the first call to the Secret Service would otherwise start
        // a second, locked keyring before ours owns the name, and ours would give way to it.
        s_busConfig = new QTemporaryFile;
        s_busConfig->open();
        s_busConfig->write("<busconfig><type>session</type><listen>unix:tmpdir=/tmp</listen>"
                           "<policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>");
        s_busConfig->flush();
        s_bus = new QProcess;
        s_bus->start(dbus, {QStringLiteral("--config-file=") + s_busConfig->fileName(),
                            QStringLiteral("--nofork"), QStringLiteral("--print-address=1")});
        if (!s_bus->waitForReadyRead(10000)) {
            s_why = "no private session bus";
            return;
        }
        qputenv("DBUS_SESSION_BUS_ADDRESS", s_bus->readLine().trimmed());
        s_keyring = new QProcess;
        s_keyring->start(keyring, {QStringLiteral("--foreground"), QStringLiteral("--components=secrets"),
                                   QStringLiteral("--unlock")});
        // The password on standard input opens the login keyring, made on first use.
        s_keyring->write("keyring-of-the-test\n");
        s_keyring->closeWriteChannel();
        // The daemon answers once it owns its name on the bus; a first store proves it.
        QString error;
        const QDeadlineTimer deadline(20000);
        while (!lumaro::platform::SecretStore::store(QStringLiteral("probe"), QStringLiteral("x"), &error) &&
               !deadline.hasExpired())
            s_keyring->waitForReadyRead(200);
        if (!lumaro::platform::SecretStore::lookup(QStringLiteral("probe")))
            s_why = "GNOME Keyring did not start: " + error.toStdString();
    }
    static void TearDownTestSuite()
    {
        for (QProcess* process : {s_keyring, s_bus}) {
            if (process) {
                process->kill();
                process->waitForFinished();
            }
            delete process;
        }
        s_keyring = s_bus = nullptr;
        delete std::exchange(s_busConfig, nullptr);
    }
    void SetUp() override
    {
        if (!s_why.empty())
            GTEST_SKIP() << s_why;
    }

    static inline QProcess* s_bus = nullptr;
    static inline QProcess* s_keyring = nullptr;
    static inline QTemporaryFile* s_busConfig = nullptr;
    static inline std::string s_why;
};

bool anyFileUnderContains(const QString& folder, const QByteArray& text)
{
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        if (file.open(QIODevice::ReadOnly) && file.readAll().contains(text))
            return true;
    }
    return false;
}

TEST_F(KeyringAccounts, ASecretGoesToTheKeyringAndReachesRcloneOnlyThroughItsEnvironment)
{
    TempFolder space;
    const lumaro::platform::Rclone rclone(
        {{QStringLiteral("RCLONE_CONFIG"), space.filePath(QStringLiteral("none"))}});
    const QString secret = QStringLiteral("pässwörd with spaces & 記号");
    QString error;
    ASSERT_TRUE(StorageAccounts::add({QStringLiteral("my_dav"),
                                      QStringLiteral("webdav"),
                                      {{QStringLiteral("url"), QStringLiteral("http://127.0.0.1:1/")},
                                       {QStringLiteral("user"), QStringLiteral("ann")}}},
                                     secret, &error))
        << error.toStdString();

    QStringList problems;
    const QMap<QString, QString> environment = StorageAccounts::environment(rclone, &problems);
    EXPECT_TRUE(problems.isEmpty()) << problems.join(QLatin1Char(';')).toStdString();
    EXPECT_EQ(environment.value(QStringLiteral("RCLONE_CONFIG_MY_DAV_TYPE")), QStringLiteral("webdav"));
    EXPECT_EQ(environment.value(QStringLiteral("RCLONE_CONFIG_MY_DAV_USER")), QStringLiteral("ann"));
    const QString obscured = environment.value(QStringLiteral("RCLONE_CONFIG_MY_DAV_PASS"));
    ASSERT_FALSE(obscured.isEmpty());
    EXPECT_NE(obscured, secret);
    EXPECT_EQ(QString::fromUtf8(rclone.run({QStringLiteral("reveal"), obscured}).output).trimmed(), secret);

    EXPECT_FALSE(anyFileUnderContains(lumaro::platform::AppPaths::dataDir(), secret.toUtf8()));
    EXPECT_FALSE(anyFileUnderContains(lumaro::platform::AppPaths::configDir(), secret.toUtf8()));

    ASSERT_TRUE(StorageAccounts::remove(QStringLiteral("my_dav"), &error));
    EXPECT_FALSE(lumaro::platform::SecretStore::lookup(QStringLiteral("rclone:my_dav")));
    EXPECT_FALSE(StorageAccounts::environment(rclone).contains(QStringLiteral("RCLONE_CONFIG_MY_DAV_TYPE")));
}

TEST_F(KeyringAccounts, APublishSignsInWithThePasswordFromTheKeyring)
{
    if (!lumaro::platform::Rclone::isInstalled())
        GTEST_SKIP() << "rclone is not installed";
    TempFolder space;
    lumaro::testing::RcloneServer server(space.makeFolder(QStringLiteral("remote")), QStringLiteral("bo"),
                                         QStringLiteral("right horse battery"));
    ASSERT_TRUE(server.start());
    TempFolder shoot;
    shoot.writePicture(QStringLiteral("IMG_1.jpg"), {300, 200});
    QString error;
    ASSERT_TRUE(StorageAccounts::add(
        {QStringLiteral("studio"),
         QStringLiteral("webdav"),
         {{QStringLiteral("url"), server.address()}, {QStringLiteral("user"), QStringLiteral("bo")}}},
        QStringLiteral("right horse battery"), &error));
    const lumaro::platform::Rclone rclone(
        {{QStringLiteral("RCLONE_CONFIG"), space.filePath(QStringLiteral("none"))}});

    RollRequest request;
    request.folder = shoot.path();
    request.destination = QStringLiteral("studio:albums");
    const PublishOutcome outcome =
        RollPublisher(rclone.with(StorageAccounts::environment(rclone))).publish(request);

    EXPECT_EQ(outcome.status, PublishStatus::published) << outcome.message.toStdString();
    EXPECT_TRUE(space.exists(QStringLiteral("remote/albums/") + QDir(shoot.path()).dirName() +
                             QStringLiteral("/index.html")));
    StorageAccounts::remove(QStringLiteral("studio"), &error);
}

TEST(StorageAccounts, ANameThatCannotBeAVariableOrASecretAmongTheSettingsIsRefused)
{
    QString error;
    EXPECT_FALSE(StorageAccounts::add({QStringLiteral("my-dav"), QStringLiteral("webdav"), {}}, {}, &error));
    EXPECT_FALSE(StorageAccounts::add({QStringLiteral("dav"),
                                       QStringLiteral("webdav"),
                                       {{QStringLiteral("pass"), QStringLiteral("plain")}}},
                                      {}, &error));
    EXPECT_TRUE(error.contains(QStringLiteral("keyring")));
    EXPECT_TRUE(StorageAccounts::all().isEmpty());
}

} // namespace
