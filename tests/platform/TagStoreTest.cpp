// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/IndexFileTagStore.h"
#include "platform/XattrTagStore.h"
#include "platform/files/TagAttribute.h"

#include "tests/support/TempFolder.h"
#include "tests/support/XdgTags.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

using namespace lumaro::platform;
using lumaro::testing::TempFolder;

using lumaro::testing::setXdgTags;
using lumaro::testing::xdgTags;

TEST(XattrTagStore, ReadsTrimmedNamesAndKeepsOtherProgramsTags)
{
    TempFolder folder;
    const QString picture = folder.write(QStringLiteral("a.jpg"));
    if (!setXdgTags(picture, " Portfolio , red,,client A "))
        GTEST_SKIP() << "no user extended attributes on this file system";
    XattrTagStore store;
    EXPECT_EQ(store.tags(picture), QStringList({"Portfolio", "red", "client A"}));
    ASSERT_TRUE(store.setTags(picture, {"Portfolio", "client A", "blue"}));
    EXPECT_EQ(xdgTags(picture), QByteArrayLiteral("Portfolio,client A,blue"));
}

TEST(XattrTagStore, AnotherProgramsTagInAnotherEncodingSurvivesAColourToggleByteForByte)
{
    TempFolder folder;
    const QString picture = folder.write(QStringLiteral("a.jpg"));
    // Latin-1 "fö" and a stray 0xFF: not UTF-8, so never ours to re-encode.
    if (!setXdgTags(picture, QByteArrayLiteral("f\xf6\xff,red")))
        GTEST_SKIP() << "no user extended attributes on this file system";
    XattrTagStore store;
    QStringList tags = store.tags(picture).value();
    ASSERT_EQ(tags.size(), 2);
    EXPECT_EQ(tags[1], QStringLiteral("red"));

    tags << QStringLiteral("blue");
    ASSERT_TRUE(store.setTags(picture, tags));
    EXPECT_EQ(xdgTags(picture), QByteArrayLiteral("f\xf6\xff,red,blue"));
    tags = store.tags(picture).value();
    tags.removeAll(QStringLiteral("red"));
    tags.removeAll(QStringLiteral("blue"));
    ASSERT_TRUE(store.setTags(picture, tags));
    EXPECT_EQ(xdgTags(picture), QByteArrayLiteral("f\xf6\xff"));
}

TEST(XattrTagStore, NamesRoundTripThroughTheAttributesBytes)
{
    const QByteArray cases[] = {
        QByteArrayLiteral(
            "\xc3\xa9t\xc3\xa9,\xe6\x97\x85\xe8\xa1\x8c,\xf0\x9f\x93\xb7"), // été, 旅行, a camera emoji
        QByteArrayLiteral("\xc0\xaf,\xed\xa0\x80,\xf4\x90\x80\x80"), // overlong, surrogate, above U+10FFFF
        QByteArrayLiteral("\xf0\x9f\x93\xb7\xdc,\xe6\x97,a\x80"
                          "b"), // cut-short sequences, lone continuation
    };
    for (const QByteArray& value : cases)
        EXPECT_EQ(XattrTagStore::serialise(XattrTagStore::parse(value)), value) << value.toHex().constData();
    EXPECT_EQ(XattrTagStore::parse(cases[0]),
              QStringList({QStringLiteral("été"), QStringLiteral("旅行"), QStringLiteral("📷")}));
}

// lumaro-cli trims tag names without Qt: for every code point, what it drops around a name must be what
// QString::trimmed drops, or the two programs would print different tags for one file.
TEST(TagAttribute, TrimsTheWhiteSpaceQtTrims)
{
    int differences = 0;
    for (char32_t code = 1; code <= 0x10FFFF && differences < 5; ++code) {
        if (code >= 0xD800 && code <= 0xDFFF)
            continue;
        const QByteArray character = QString::fromUcs4(&code, 1).toUtf8();
        const QByteArray value = character + "x" + character;
        const auto names = lumaro::platform::TagAttribute::names(value.toStdString());
        const QString expected = QString::fromUtf8(value).trimmed();
        const QString trimmed = names.empty() ? QString() : QString::fromStdString(names.front());
        if (code != ',' && trimmed != expected) {
            ADD_FAILURE() << "U+" << std::hex << uint32_t(code);
            ++differences;
        }
    }
}

TEST(XattrTagStore, TheAttributeGoesWhenTheLastTagDoes)
{
    TempFolder folder;
    const QString picture = folder.write(QStringLiteral("a.jpg"));
    if (!setXdgTags(picture, "red"))
        GTEST_SKIP() << "no user extended attributes on this file system";
    XattrTagStore store;
    ASSERT_TRUE(store.setTags(picture, {}));
    EXPECT_EQ(xdgTags(picture), std::nullopt);
    EXPECT_EQ(store.tags(picture), QStringList());
    EXPECT_TRUE(store.setTags(picture, {})); // removing nothing is fine
}

TEST(XattrTagStore, AMissingFileIsAnErrorNotAnEmptyList)
{
    TempFolder folder;
    QString error;
    EXPECT_FALSE(XattrTagStore().tags(folder.filePath(QStringLiteral("gone.jpg")), &error));
    EXPECT_FALSE(error.isEmpty());
}

TEST(XattrTagStore, WithoutExtendedAttributesTheFolderTagFileIsUsed)
{
    TempFolder card;
    const QString a = card.write(QStringLiteral("DCIM/IMG_0001.JPG"));
    const QString b = card.write(QStringLiteral("DCIM/IMG_0002.JPG"));
    IndexFileTagStore cardStore;
    XattrTagStore store(&cardStore, [](const QString&) { return true; }); // as on FAT/exFAT

    EXPECT_EQ(store.tags(a), QStringList());
    ASSERT_TRUE(store.setTags(a, {"red", "green"}));
    ASSERT_TRUE(store.setTags(b, {"blue"}));
    EXPECT_EQ(store.tags(a), QStringList({"red", "green"}));
    EXPECT_EQ(xdgTags(a), std::nullopt);

    const QJsonObject onDisk =
        QJsonDocument::fromJson(card.read(QStringLiteral("DCIM/_index/file_tags.json"))).object();
    EXPECT_EQ(onDisk.keys(), QStringList({"IMG_0001.JPG", "IMG_0002.JPG"}));
    EXPECT_TRUE(card.read(QStringLiteral("DCIM/.hidden")).contains("_index"));

    ASSERT_TRUE(store.setTags(a, {}));
    EXPECT_EQ(store.tags(a), QStringList());
    EXPECT_EQ(store.tags(b), QStringList({"blue"}));
}

TEST(IndexFileTagStore, APlainFileNamedIndexIsNeverReplaced)
{
    TempFolder card;
    const QString picture = card.write(QStringLiteral("a.jpg"));
    card.write(QStringLiteral("_index"), QByteArrayLiteral("not a folder"));
    QString error;
    EXPECT_FALSE(IndexFileTagStore().setTags(picture, {"red"}, &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_EQ(card.read(QStringLiteral("_index")), QByteArrayLiteral("not a folder"));
}

// The folder's .hidden belongs to the user's file manager: making `_index` adds one line, changes no other.
TEST(IndexFileTagStore, ListingIndexInDotHiddenKeepsEveryNameHidden)
{
    struct Case
    {
        QByteArray before;
        QByteArray after;
    };
    const Case cases[] = {
        {"", "_index\n"},
        {"keep-me", "keep-me\n_index\n"}, // no newline at its end
        {"keep-me\r\n", "keep-me\r\n_index\n"},
        {"_index\r\n", "_index\r\n"},
    };
    for (const Case& c : cases) {
        TempFolder card;
        const QString picture = card.write(QStringLiteral("a.jpg"));
        if (!c.before.isEmpty())
            card.write(QStringLiteral(".hidden"), c.before);
        ASSERT_TRUE(IndexFileTagStore().setTags(picture, {"red"}));
        EXPECT_EQ(card.read(QStringLiteral(".hidden")), c.after) << c.before.constData();
    }
}
