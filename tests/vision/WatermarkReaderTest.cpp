// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/WatermarkReader.h"

#include "platform/vision/TextRecognizer.h"

#include <gtest/gtest.h>

using namespace lumaro::vision;
using lumaro::platform::TextRecognition;

namespace {

// Answers each reading with the next of a script, in the reader's region order (the top band, the bottom
// band, then any second readings); nothing once the script is spent.
class ScriptedTextRecognizer final : public lumaro::platform::TextRecognizer
{
public:
    explicit ScriptedTextRecognizer(QList<TextRecognition> script, int* calls = nullptr)
        : m_script(std::move(script)), m_calls(calls)
    {
    }
    TextRecognition recognize(const QImage& image) override
    {
        if (m_calls)
            ++*m_calls;
        m_sizes << image.size();
        return m_script.isEmpty() ? TextRecognition{} : m_script.takeFirst();
    }
    QList<QSize> m_sizes;

private:
    QList<TextRecognition> m_script;
    int* m_calls;
};

QImage greyPicture()
{
    QImage picture(1600, 1000, QImage::Format_RGB32);
    picture.fill(Qt::gray);
    return picture;
}

// A line whose box spans [left, right) of the enlarged band's width and [top, top + 40) of its height.
TextRecognition lineAt(const QString& text, double left, double right, int top = 120,
                       QList<float> confidences = {})
{
    // Both bands of a 1600 × 1000 picture are 1600 × 160, enlarged 1.2 times to 1920 × 192.
    const QRect box(int(left * 1920), top, int((right - left) * 1920), 40);
    return TextRecognition{{text}, {}, 0.0, {box}, {confidences}};
}

// Each character of `text` read as sure as `sure`, but the one at `weak`, read as sure as `weakSure`.
QList<float> sureness(const QString& text, qsizetype weak, float weakSure, float sure = 0.95f)
{
    QList<float> out(text.size(), sure);
    if (weak >= 0)
        out[weak] = weakSure;
    return out;
}

} // namespace

TEST(WatermarkReader, ALineCutByABandsInnerEdgeIsLeftOut)
{
    // The bottom band's top edge runs through a caption line (its box starts at the band's top); the stamp
    // below it, at the picture's own edge, is read in both the first and the confirming reading.
    QList<TextRecognition> script{{},
                                  TextRecognition{{QStringLiteral("@caption"), QStringLiteral("@小鹿摄影")},
                                                  {},
                                                  0.0,
                                                  {QRect(200, 0, 400, 40), QRect(1400, 150, 400, 42)}},
                                  lineAt(QStringLiteral("@小鹿摄影"), 0.7, 0.95, 150)};
    WatermarkReader reader(std::make_unique<ScriptedTextRecognizer>(script));
    const WatermarkReading reading = reader.read(greyPicture());
    ASSERT_TRUE(reading.found);
    EXPECT_EQ(reading.found->identifier, QStringLiteral("@小鹿摄影"));
}

TEST(WatermarkReader, AnIdentifierWithACharacterTheReaderWasUnsureOfIsNotTaken)
{
    struct Case
    {
        const char* line;
        qsizetype weak; // the character read unsure, -1 for none
        float sure;
        const char* found; // "" for none
    };
    const Case cases[] = {
        {"@momo.photc", 10, 0.31f, ""},            // the last letter a guess: the misread that repeats
        {"@momo.photo", -1, 0.f, "@momo.photo"},   // every character sure
        {"@momo.photo", 0, 0.35f, "@momo.photo"},  // only the "@" unsure: it names no poster
        {"ID: 63018274", 5, 0.2f, ""},             // a digit of the account a guess
        {"抖音号：dy2045xq", 1, 0.3f, "dy2045xq"}, // only the app's name unsure
        {"@k.tanaka", 2, 0.69f, ""},
        {"快手号：ks20991", 6, 0.88f, "ks20991"},
    };
    for (const Case& c : cases) {
        const QString line = QString::fromUtf8(c.line);
        const TextRecognition read = lineAt(line, 0.7, 0.95, 120, sureness(line, c.weak, c.sure));
        // Read in both bands: no confirming reading needed.
        WatermarkReader reader(std::make_unique<ScriptedTextRecognizer>(QList<TextRecognition>{read, read}));
        const WatermarkReading reading = reader.read(greyPicture());
        EXPECT_EQ(reading.found ? reading.found->identifier : QString(), QString::fromUtf8(c.found))
            << c.line;
    }
}

TEST(WatermarkReader, EachBandIsReadOnceAndOnceMoreToConfirm)
{
    // A stamp in one band: both bands, then that band again at another enlargement. A picture without a
    // stamp: both bands, then both again with raised contrast.
    int calls = 0;
    const TextRecognition stamp = lineAt(QStringLiteral("@hana.lens"), 0.4, 0.6);
    WatermarkReader stamped(
        std::make_unique<ScriptedTextRecognizer>(QList<TextRecognition>{{}, stamp, stamp}, &calls));
    EXPECT_TRUE(stamped.read(greyPicture()).found);
    EXPECT_EQ(calls, 3);

    calls = 0;
    WatermarkReader clean(std::make_unique<ScriptedTextRecognizer>(QList<TextRecognition>{}, &calls));
    EXPECT_FALSE(clean.read(greyPicture()).found);
    EXPECT_EQ(calls, 4);
}

TEST(WatermarkReader, ALineAtThePicturesOwnEdgeIsNotCut)
{
    // The line ends at the band's right edge and bottom edge, which are the picture's.
    const TextRecognition stamp = lineAt(QStringLiteral("ID: 12345678"), 0.8, 1.0, 152);
    WatermarkReader reader(
        std::make_unique<ScriptedTextRecognizer>(QList<TextRecognition>{{}, stamp, stamp}));
    const WatermarkReading reading = reader.read(greyPicture());
    ASSERT_TRUE(reading.found);
    EXPECT_EQ(reading.found->identifier, QStringLiteral("12345678"));
}
TEST(WatermarkReader, FaintStampsAreReadAgainWithRaisedContrastOnlyWhenNothingWasFound)
{
    // The enhancer paints its copies black; the fake reads a stamp off black copies only.
    class ReadsDarkCopies final : public lumaro::platform::TextRecognizer
    {
    public:
        TextRecognition recognize(const QImage& image) override
        {
            if (image.pixelColor(0, 0) != QColor(Qt::black))
                return {};
            return {{QStringLiteral("@hana.lens")}, {}};
        }
    };
    int enhanced = 0;
    const auto blacken = [&enhanced](const QImage& region) {
        ++enhanced;
        QImage copy = region;
        copy.fill(Qt::black);
        return copy;
    };
    WatermarkReader reader(std::make_unique<ReadsDarkCopies>(), blacken);
    const WatermarkReading reading = reader.read(greyPicture());
    ASSERT_TRUE(reading.found);
    EXPECT_EQ(reading.found->identifier, QStringLiteral("@hana.lens"));

    enhanced = 0;
    int calls = 0;
    WatermarkReader plain(
        std::make_unique<ScriptedTextRecognizer>(
            QList<TextRecognition>{{{QStringLiteral("@marco_v")}, {}}, {{QStringLiteral("@marco_v")}, {}}},
            &calls),
        blacken);
    EXPECT_EQ(plain.read(greyPicture()).found->identifier, QStringLiteral("@marco_v"));
    EXPECT_EQ(enhanced, 0);
    EXPECT_EQ(calls, 2);
}
