// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/WatermarkIdentifier.h"

#include <gtest/gtest.h>

using lumaro::vision::WatermarkIdentifier;

TEST(WatermarkIdentifier, FindsHandlesAndIdLinesAsPlatformsStampThem)
{
    struct Case
    {
        const char* line;
        const char* identifier; // "" when none may be found
        const char* kind;
    };
    const Case cases[] = {
        {"@lily_chen", "@lily_chen", "handle"},
        {"@momo.photo", "@momo.photo", "handle"},
        {"@Lily_Chen", "@lily_chen", "handle"}, // handles are one account whatever the case
        {"抖音号：DY88231", "dy88231", "id"},
        {"@名字", "@名字", "handle"},
        {"＠小鹿摄影", "@小鹿摄影", "handle"}, // full-width "@"
        {"小红书 @ sunny_days.", "@sunny_days",
         "handle"}, // a logo word before, a space and a dot from the reader
        {"ID: 12345678", "12345678", "id"},
        {"ID:12345678", "12345678", "id"},
        {"UID 20398811", "20398811", "id"},
        {"号：20398811", "20398811", "id"},
        {"抖音号：dy88231", "dy88231", "id"},
        {"小红书号: 4417723901", "4417723901", "id"},
        {"ＩＤ：１２３４５６７８", "12345678", "id"}, // full-width letters and digits
        {"@k.tanaka ID: 87654321", "87654321", "id"}, // both: the account number
        {"mail me: anna@example.com", "", ""},        // an e-mail address is no handle
        {"VALID: 1234", "", ""},                      // "ID" as the end of a word
        {"ID: 12", "", ""},                           // too short for an account
        {"paid 2000 dollars", "", ""},                // running text
        {"抖音号：lilychen", "", ""},                 // letters alone could be any word: left unread
        {"小红书号nspirutsonfromthreehigh-levelapproaches", "", ""}, // a page line run together
        {"@", "", ""},
        {"Nikon D850 1/250s", "", ""},
        {"@yuki 0412", "", ""},                    // "_" read as a space: "@yuki" is another poster
        {"@光影 Studio", "", ""},                  // the same between scripts
        {"@小鹿摄影 微博", "@小鹿摄影", "handle"}, // the app's name after the handle
    };
    for (const Case& c : cases) {
        const auto found = WatermarkIdentifier::find(QString::fromUtf8(c.line));
        if (*c.identifier == '\0') {
            EXPECT_FALSE(found) << c.line << " gave " << found->identifier.toStdString();
            continue;
        }
        ASSERT_TRUE(found) << c.line;
        EXPECT_EQ(found->identifier, QString::fromUtf8(c.identifier)) << c.line;
        EXPECT_EQ(WatermarkIdentifier::kindText(found->kind), QString::fromUtf8(c.kind)) << c.line;
        EXPECT_EQ(found->text, QString::fromUtf8(c.line).trimmed());
    }
}

TEST(WatermarkIdentifier, FolderNamesNeverLeaveTheirFolder)
{
    EXPECT_EQ(WatermarkIdentifier::folderName(QStringLiteral("@名字")), QStringLiteral("@名字"));
    EXPECT_EQ(WatermarkIdentifier::folderName(QStringLiteral("a/b")), QStringLiteral("a_b"));
    EXPECT_EQ(WatermarkIdentifier::folderName(QStringLiteral("..")), QStringLiteral("_.."));
    EXPECT_EQ(WatermarkIdentifier::folderName(QStringLiteral("a\nb")), QStringLiteral("a_b"));
}
