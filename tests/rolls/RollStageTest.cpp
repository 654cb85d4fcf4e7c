// SPDX-License-Identifier: GPL-3.0-or-later
// A picture's published name follows its version: edited, it is published under a new name, so stores that
// compare sizes or nothing at all still get the new copy.
#include "rolls/RollStage.h"

#include "platform/files/FileNameCodec.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using lumaro::rolls::RollStage;

namespace {

struct NameCase
{
    const char* name;
    QByteArray fileName; // as the card wrote it
};

class RollStagePublishedName : public ::testing::TestWithParam<NameCase>
{
};

} // namespace

TEST_P(RollStagePublishedName, ChangesWhenThePictureIsEditedAndOnlyThen)
{
    lumaro::testing::TempFolder folder;
    const QString path = folder.writeNamedByBytes(GetParam().fileName, QByteArray(1000, 'a'));
    const QString name = lumaro::platform::FileNameCodec::decode(GetParam().fileName);
    const RollStage stage(folder.path(), QStringLiteral("album"), {});

    const QString first = stage.publishedBase(name, path);
    EXPECT_EQ(stage.publishedBase(name, path), first);
    folder.writeNamedByBytes(GetParam().fileName, QByteArray(2000, 'b'));
    EXPECT_NE(stage.publishedBase(name, path), first);
}

INSTANTIATE_TEST_SUITE_P(Names, RollStagePublishedName,
                         ::testing::Values(NameCase{"utf8", QByteArrayLiteral("IMG_0001 照片.jpg")},
                                           NameCase{"notUtf8", QByteArrayLiteral("caf\xe9.jpg")}),
                         [](const auto& info) { return std::string(info.param.name); });
