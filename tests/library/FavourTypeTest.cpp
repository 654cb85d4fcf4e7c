// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/FavourType.h"

#include <QSet>

#include <gtest/gtest.h>

using namespace lumaro::library;

struct StoredCase
{
    FavourType type;
    const char* stored;
};

class FavourTypeStoredText : public ::testing::TestWithParam<StoredCase>
{
};

// The stored text is the column's contract: rows written by earlier versions must read back as the same case.
TEST_P(FavourTypeStoredText, WritesAndReadsBack)
{
    const StoredCase c = GetParam();
    EXPECT_EQ(storedText(c.type), QString::fromUtf8(c.stored));
    EXPECT_EQ(favourTypeFromText(QString::fromUtf8(c.stored)), c.type);
    EXPECT_EQ(favourTypeFromText(caseName(c.type)), c.type);
}

INSTANTIATE_TEST_SUITE_P(AllElevenCases, FavourTypeStoredText,
                         ::testing::Values(StoredCase{FavourType::next, "NEXT"}, StoredCase{FavourType::sss, "SSS"},
                                           StoredCase{FavourType::s, "S"}, StoredCase{FavourType::a, "A"},
                                           StoredCase{FavourType::heart, "heart"},
                                           StoredCase{FavourType::diamond, "diamond"},
                                           StoredCase{FavourType::grass, "grass"},
                                           StoredCase{FavourType::black, "black"},
                                           StoredCase{FavourType::hhh, "HHH"}, StoredCase{FavourType::h, "H"},
                                           StoredCase{FavourType::nice, "NICE"}));

TEST(FavourType, EveryCaseHasItsOwnStoredTextInDeclarationOrder)
{
    QSet<QString> seen;
    for (const FavourType type : allFavourTypes)
        seen.insert(storedText(type));
    EXPECT_EQ(seen.size(), 11);
    EXPECT_EQ(allFavourTypes.front(), FavourType::next);
    EXPECT_EQ(allFavourTypes.back(), FavourType::nice);
}

TEST(FavourType, UnknownTextIsNoType)
{
    EXPECT_EQ(favourTypeFromText(QString()), std::nullopt);
    EXPECT_EQ(favourTypeFromText(QStringLiteral("SS")), std::nullopt);
    EXPECT_EQ(favourTypeFromText(QStringLiteral("hearts")), std::nullopt);
}
