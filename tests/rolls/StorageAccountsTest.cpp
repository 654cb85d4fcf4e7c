// SPDX-License-Identifier: GPL-3.0-or-later
// Storage accounts against a real Secret Service (GNOME Keyring on a private session bus). Skipped, with the
// reason, where neither can run.
#include "rolls/StorageAccounts.h"
#include "rolls/RollPublisher.h"

#include "platform/AppPaths.h"
#include "platform/cloud/SecretStore.h"
#include "tests/rolls/PrivateKeyring.h"
#include "tests/rolls/RcloneServer.h"
#include "tests/support/TempFolder.h"

#include <QDirIterator>

#include <gtest/gtest.h>

#include <utility>

using namespace lumaro::rolls;
using lumaro::testing::TempFolder;

namespace {

class KeyringAccounts : public ::testing::Test
{
protected:
    static void SetUpTestSuite() { s_keyring = new lumaro::testing::PrivateKeyring; }
    static void TearDownTestSuite() { delete std::exchange(s_keyring, nullptr); }
    void SetUp() override
    {
        if (!s_keyring->whyNot().empty())
            GTEST_SKIP() << s_keyring->whyNot();
    }

    static inline lumaro::testing::PrivateKeyring* s_keyring = nullptr;
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
    const lumaro::platform::RcloneResult revealed = rclone.run({QStringLiteral("reveal"), obscured});
    EXPECT_EQ(QString::fromUtf8(revealed.output).trimmed(), secret)
        << "rclone reveal: started " << revealed.started << ", exit " << revealed.exitCode << ", "
        << revealed.errors.join(QStringLiteral("; ")).toStdString();

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
