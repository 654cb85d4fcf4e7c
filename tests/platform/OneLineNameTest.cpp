// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/OneLineName.h"

#include <gtest/gtest.h>

using lumaro::platform::OneLineName;

namespace {

struct NameCase
{
    const char16_t* name;
    const char16_t* shown;
};

class OneLineNames : public ::testing::TestWithParam<NameCase>
{
};

} // namespace

TEST_P(OneLineNames, WriteControlCharactersOut)
{
    const QString shown = OneLineName::of(QString::fromUtf16(GetParam().name));
    EXPECT_EQ(shown, QString::fromUtf16(GetParam().shown));
    EXPECT_FALSE(shown.contains(QLatin1Char('\n')));
}

INSTANTIATE_TEST_SUITE_P(
    OneLineName, OneLineNames,
    ::testing::Values(NameCase{u"IMG_0001.JPG", u"IMG_0001.JPG"},
                      NameCase{u"new\nline.jpg", u"new\\nline.jpg"},
                      NameCase{u"tab\there.jpg", u"tab\\there.jpg"}, NameCase{u"\r\n.jpg", u"\\x0d\\n.jpg"},
                      NameCase{u"esc\x1b.jpg", u"esc\\x1b.jpg"}, NameCase{u"del\x7f.jpg", u"del\\x7f.jpg"},
                      NameCase{u"c1\x85.jpg", u"c1\\x85.jpg"},
                      // Letters, spaces, emoji and a backslash stay as they are.
                      NameCase{u"海边 日落 🌅.jpg", u"海边 日落 🌅.jpg"}, NameCase{u"a\\b.jpg", u"a\\b.jpg"}));
