// SPDX-License-Identifier: GPL-3.0-or-later
// The front end's JSON strings must be the bytes lumaro-cli-light's QJsonDocument writes, for every character
// a name can hold: each code point below U+3000 (controls, Latin, punctuation, the line separators) and every
// 61st one above, each between two letters.
#include "cli/front/JsonText.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <vector>

TEST(JsonText, IsWhatQJsonDocumentWritesForEveryCharacter)
{
    int compared = 0;
    for (char32_t code = 0; code <= 0x10FFFF; code += code < 0x3000 ? 1 : 61) {
        if (code >= 0xD800 && code <= 0xDFFF)
            continue; // halves of a pair, no character
        const QString text = QStringLiteral("a") + QString::fromUcs4(&code, 1) + QStringLiteral("b");
        const QByteArray written = QJsonDocument(QJsonArray{text}).toJson(QJsonDocument::Compact);
        const QByteArray expected = written.mid(1, written.size() - 2); // inside [ ]
        const QByteArray utf8 = text.toUtf8();
        ASSERT_EQ(lumaro::cli::jsonString(std::string_view(utf8.constData(), size_t(utf8.size()))),
                  expected.toStdString())
            << "U+" << std::hex << uint32_t(code);
        ++compared;
    }
    EXPECT_GT(compared, 30000);
}

// Numbers too: the dates of favourites (seconds, whole or with a fraction), and every magnitude and form a
// double can take, including where Qt switches between integer, fixed and exponent forms.
TEST(JsonText, NumbersAreWhatQJsonDocumentWrites)
{
    std::vector<double> numbers{0.0, -0.0, 1.0, -1.0, 0.1, 1e-7, 1.5e-5, 0.0001, 1e15, 1e16, 1.764e16,
                                9007199254740991.0, 9007199254740992.0, 9007199254740993.0,
                                123456789012345678.0, 9.3e18, 1e19, 1e21, 1e300, 5e-324,
                                1764000000.0, 1764000000.5, 1764000000.123456,
                                std::numeric_limits<double>::infinity(), std::nan("")};
    std::mt19937_64 random(20261124);
    for (int i = 0; i < 20000; ++i) {
        const double exponent = std::uniform_real_distribution<double>(-30, 30)(random);
        numbers.push_back(std::pow(10.0, exponent) * (i % 2 ? 1 : -1));
        numbers.push_back(1.7e9 + std::uniform_real_distribution<double>(0, 1e8)(random)); // a date, in seconds
        numbers.push_back(std::round(numbers.back()));
    }
    for (const double number : numbers) {
        const QByteArray written = QJsonDocument(QJsonArray{number}).toJson(QJsonDocument::Compact);
        ASSERT_EQ(lumaro::cli::jsonNumber(number), written.mid(1, written.size() - 2).toStdString())
            << std::hexfloat << number;
    }
}
