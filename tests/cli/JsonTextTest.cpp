// SPDX-License-Identifier: GPL-3.0-or-later
// The front end's JSON strings must be the bytes lumaro-cli-light's QJsonDocument writes, for every character
// a name can hold: each code point below U+3000 (controls, Latin, punctuation, the line separators) and every
// 61st one above, each between two letters.
#include "cli/front/JsonText.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <gtest/gtest.h>

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
