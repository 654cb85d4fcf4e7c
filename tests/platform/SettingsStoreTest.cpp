// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AppPaths.h"
#include "platform/QSettingsStore.h"
#include "platform/files/SettingsFileValue.h"

#include "tests/support/TempFolder.h"

#include <QFileInfo>
#include <QSettings>

#include <gtest/gtest.h>

using namespace lumaro::platform;
using lumaro::testing::TempFolder;

TEST(QSettingsStore, ValuesSurviveReopeningTheFile)
{
    TempFolder folder;
    const QString file = folder.filePath(QStringLiteral("s.conf"));
    {
        QSettingsStore store(file);
        store.setBytes(QStringLiteral("LMR_FolderBookmarkData"), QByteArray("\x00\x01\xff", 3));
        store.setString(QStringLiteral("LMR_OriginalFolderPath"), QStringLiteral("/照片/My Trip #1"));
        store.setInteger(QStringLiteral("LMR_ImagesPerRow"), 7);
        store.setBoolean(QStringLiteral("LMR_HasRequestedPermissions"), true);
        store.setBoolean(QStringLiteral("off"), false);
        store.setString(QStringLiteral("gone"), QStringLiteral("x"));
        store.remove(QStringLiteral("gone"));
    }
    QSettingsStore reopened(file);
    EXPECT_EQ(reopened.bytes(QStringLiteral("LMR_FolderBookmarkData")), QByteArray("\x00\x01\xff", 3));
    EXPECT_EQ(reopened.string(QStringLiteral("LMR_OriginalFolderPath")), QStringLiteral("/照片/My Trip #1"));
    EXPECT_EQ(reopened.integer(QStringLiteral("LMR_ImagesPerRow")), 7);
    EXPECT_EQ(reopened.boolean(QStringLiteral("LMR_HasRequestedPermissions")), true);
    EXPECT_EQ(reopened.boolean(QStringLiteral("off")), false);
    EXPECT_FALSE(reopened.contains(QStringLiteral("gone")));
    EXPECT_EQ(reopened.integer(QStringLiteral("missing")), std::nullopt);
}

TEST(QSettingsStore, IntegerReadOfATextValueIsAbsentNotZero)
{
    TempFolder folder;
    QSettingsStore store(folder.filePath(QStringLiteral("s.conf")));
    store.setString(QStringLiteral("LMR_ImagesPerRow"), QStringLiteral("many"));
    EXPECT_EQ(store.integer(QStringLiteral("LMR_ImagesPerRow")), std::nullopt);
}

TEST(AppPaths, FollowTheXdgHomesOfTheProcess)
{
    EXPECT_EQ(AppPaths::configDir(), qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/lumaro"));
    EXPECT_EQ(AppPaths::dataDir(), qEnvironmentVariable("XDG_DATA_HOME") + QStringLiteral("/lumaro"));
    EXPECT_EQ(AppPaths::cacheDir(), qEnvironmentVariable("XDG_CACHE_HOME") + QStringLiteral("/lumaro"));
}

TEST(AppPaths, ModelsAreSearchedInTheEnvironmentFolderFirst)
{
    qputenv("LUMARO_MODELS_DIR", "/opt/models");
    const QStringList dirs = AppPaths::modelSearchDirs();
    qunsetenv("LUMARO_MODELS_DIR");
    ASSERT_GE(dirs.size(), 3);
    EXPECT_EQ(dirs.at(0), QStringLiteral("/opt/models"));
    EXPECT_EQ(dirs.at(1), AppPaths::dataDir() + QStringLiteral("/models"));
    EXPECT_TRUE(dirs.at(2).endsWith(QStringLiteral("share/lumaro/models")));
}

TEST(QSettingsStore, SharedStoreWritesUnderTheConfigHome)
{
    QSettingsStore::shared().setInteger(QStringLiteral("LMR_ImagesPerRow"), 4);
    QSettingsStore::shared().sync();
    EXPECT_TRUE(QFileInfo::exists(AppPaths::configDir() + QStringLiteral("/lumaro.conf")));
}

// The Qt-free reading of one setting must never give a value QSettings would not: for what QSettings itself
// writes, it gives the same text or admits it cannot tell.
class SettingsFileValueAgainstQSettings : public ::testing::TestWithParam<QString>
{
};

TEST_P(SettingsFileValueAgainstQSettings, GivesQSettingsValueOrSaysItCannotTell)
{
    TempFolder folder;
    const QString file = folder.filePath(QStringLiteral("lumaro.conf"));
    {
        QSettingsStore store(file);
        store.setString(QStringLiteral("LMR_Before"), QStringLiteral("x"));
        store.setString(QStringLiteral("LMR_SidecarNaming"), GetParam());
        store.setBytes(QStringLiteral("LMR_Bytes"), QByteArray("\x00naming=picture\n", 16));
        QSettings(file, QSettings::IniFormat).setValue(QStringLiteral("Window/LMR_SidecarNaming"), 3);
    }
    const auto found = SettingsFileValue::read(file.toStdString(), "LMR_SidecarNaming");
    const bool plainlyWritten = GetParam() == QLatin1String("stem") || GetParam() == QLatin1String("picture");
    if (found.found == SettingsFileValue::Found::unclear && !plainlyWritten)
        return;
    ASSERT_EQ(found.found, SettingsFileValue::Found::plain);
    EXPECT_EQ(QString::fromStdString(found.text), QSettingsStore(file).string(QStringLiteral("LMR_SidecarNaming")));
}

INSTANTIATE_TEST_SUITE_P(Values, SettingsFileValueAgainstQSettings,
                         ::testing::Values(QStringLiteral("stem"), QStringLiteral("picture"), QString(),
                                           QStringLiteral(" stem"), QStringLiteral("stem, picture"),
                                           QStringLiteral("a;b"), QStringLiteral("\"stem\""),
                                           QStringLiteral("照片 #1"), QStringLiteral("@Variant(x)"),
                                           QStringLiteral("back\\slash"), QStringLiteral("tab\there")));

struct SettingsText
{
    const char* name;
    const char* contents;
    SettingsFileValue::Found found;
    const char* text;
};

class SettingsFileValueParsing : public ::testing::TestWithParam<SettingsText>
{
};

TEST_P(SettingsFileValueParsing, ReadsOnlyThePlainForms)
{
    const auto value = SettingsFileValue::parse(GetParam().contents, "LMR_SidecarNaming");
    EXPECT_EQ(value.found, GetParam().found);
    EXPECT_EQ(value.text, GetParam().text);
}

using Found = SettingsFileValue::Found;
INSTANTIATE_TEST_SUITE_P(
    Cases, SettingsFileValueParsing,
    ::testing::Values(
        SettingsText{"general", "[General]\nLMR_SidecarNaming=stem\n", Found::plain, "stem"},
        SettingsText{"beforeAnySection", "LMR_SidecarNaming = stem \r\n[Window]\nx=1\n", Found::plain,
                     "stem"},
        SettingsText{"otherSectionOnly", "[Window]\nLMR_SidecarNaming=stem\n", Found::absent, ""},
        SettingsText{"empty", "", Found::absent, ""},
        SettingsText{"writtenTwice", "[General]\nLMR_SidecarNaming=stem\nLMR_SidecarNaming=picture\n",
                     Found::unclear, ""},
        SettingsText{"continued", "[General]\nLMR_Other=a\\\nLMR_SidecarNaming=stem\n", Found::unclear, ""},
        SettingsText{"longerKey", "[General]\nLMR_SidecarNamingOld=stem\n", Found::unclear, ""},
        SettingsText{"quoted", "[General]\nLMR_SidecarNaming=\"stem\"\n", Found::unclear, ""},
        SettingsText{"commented", "[General]\nLMR_SidecarNaming=stem ; was picture\n", Found::unclear, ""}),
    [](const auto& info) { return std::string(info.param.name); });
