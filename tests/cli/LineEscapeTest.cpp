// SPDX-License-Identifier: GPL-3.0-or-later
// One name per line, whatever bytes it holds: what every listing of lumaro-cli prints names with.
#include "cli/front/LineEscape.h"

#include <gtest/gtest.h>

namespace {

struct Escape
{
    const char* name;
    std::string_view bytes;
    std::string_view line;
};

class LineEscapeCases : public ::testing::TestWithParam<Escape>
{
};

} // namespace

TEST_P(LineEscapeCases, EscapesWhatWouldBreakTheLine)
{
    EXPECT_EQ(lumaro::cli::escapedLineBytes(GetParam().bytes), GetParam().line);
    std::string appended = "kept|";
    lumaro::cli::appendEscapedLineBytes(appended, GetParam().bytes);
    EXPECT_EQ(appended, "kept|" + std::string(GetParam().line));
}

using namespace std::string_view_literals;

INSTANTIATE_TEST_SUITE_P(Names, LineEscapeCases,
                         ::testing::Values(Escape{"empty", ""sv, ""sv},
                                           Escape{"plain", "IMG_0001.JPG"sv, "IMG_0001.JPG"sv},
                                           Escape{"backslash", "a\\b"sv, "a\\\\b"sv},
                                           Escape{"newlineAndTab", "a\nb\tc"sv, "a\\nb\\tc"sv},
                                           Escape{"controls", "\x01x\x7f"sv, "\\x01x\\x7f"sv},
                                           Escape{"nul", "a\0b"sv, "a\\x00b"sv},
                                           Escape{"multibyteKept", "秋 \xf0\x9f\x93\xb7 \xc2\x85"sv,
                                                  "秋 \xf0\x9f\x93\xb7 \xc2\x85"sv},
                                           Escape{"latin1Byte", "caf\xe9.jpg"sv, "caf\\xe9.jpg"sv},
                                           Escape{"overlong", "\xc0\xaf"sv, "\\xc0\\xaf"sv},
                                           Escape{"surrogate", "\xed\xa0\x80"sv, "\\xed\\xa0\\x80"sv},
                                           Escape{"cutAtTheEnd", "x\xe6\x97"sv, "x\\xe6\\x97"sv},
                                           Escape{"everythingAtOnce", "\\\n\xe9\\"sv, "\\\\\\n\\xe9\\\\"sv}),
                         [](const auto& info) { return std::string(info.param.name); });
