// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/WatermarkReader.h"

#include "platform/vision/TextRecognizer.h"

#include <QPainter>

#include <gtest/gtest.h>

using namespace lumaro::vision;
using lumaro::platform::TextRecognition;

namespace {

// Answers each reading with the next of a script, in the reader's region order (the top band, the bottom
// band, then the closer looks at a line); nothing once the script is spent. A scripted line with a null box
// is placed in the middle of the picture it is read off (a closer look's crop, whose size the test does not
// know). Lines read as lines of their own answer from a script of their own, in order; unread when spent;
// each character read as sure as `lineSureness` says, in order, or 0.95 once it is spent.
class ScriptedTextRecognizer final : public lumaro::platform::TextRecognizer
{
public:
    explicit ScriptedTextRecognizer(QList<TextRecognition> script, int* calls = nullptr,
                                    QStringList lines = {}, QList<QList<float>> lineSureness = {})
        : m_script(std::move(script)), m_lines(std::move(lines)), m_lineSureness(std::move(lineSureness)),
          m_calls(calls)
    {
    }
    TextRecognition recognize(const QImage& image) override
    {
        if (m_calls)
            ++*m_calls;
        m_sizes << image.size();
        TextRecognition next = m_script.isEmpty() ? TextRecognition{} : m_script.takeFirst();
        for (QRect& box : next.boxes)
            if (box.isNull())
                box = QRect(image.width() / 4, image.height() * 2 / 5, image.width() / 2, image.height() / 5);
        return next;
    }
    TextRecognition readLine(const QImage& image) override
    {
        m_lineSizes << image.size();
        if (m_lines.isEmpty())
            return {};
        const QString line = m_lines.takeFirst();
        const QList<float> sure =
            m_lineSureness.isEmpty() ? QList<float>(line.size(), 0.95f) : m_lineSureness.takeFirst();
        return TextRecognition{{line}, {}, 0.0, {image.rect()}, {sure}};
    }
    QList<QSize> m_sizes, m_lineSizes;

private:
    QList<TextRecognition> m_script;
    QStringList m_lines;
    QList<QList<float>> m_lineSureness;
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

// A line in the middle of a closer look's crop.
TextRecognition looked(const QString& text, QList<float> confidences = {})
{
    return TextRecognition{{text}, {}, 0.0, {QRect()}, {confidences}};
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
                                  looked(QStringLiteral("@小鹿摄影"))};
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

TEST(WatermarkReader, EachBandIsReadOnceAndTheStampsLineOnceMoreToConfirm)
{
    // A stamp in one band: both bands, then a closer look at its line. A picture without a
    // stamp: both bands, then both again with raised contrast.
    int calls = 0;
    const TextRecognition stamp = lineAt(QStringLiteral("@hana.lens"), 0.4, 0.6);
    WatermarkReader stamped(std::make_unique<ScriptedTextRecognizer>(
        QList<TextRecognition>{{}, stamp, looked(QStringLiteral("@hana.lens"))}, &calls));
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
    WatermarkReader reader(std::make_unique<ScriptedTextRecognizer>(
        QList<TextRecognition>{{}, stamp, looked(QStringLiteral("ID: 12345678"))}));
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

TEST(WatermarkReader, ACloserLookPutsBackWhatTheFirstReadingDroppedButNothingElse)
{
    struct Case
    {
        const char* band;   // read sure in the bottom band only
        const char* first;  // the first closer look at its line
        const char* second; // the second closer look, when the first read a longer identifier (the band
                            // read again when the first saw no line)
        const char* found;  // "" for none
    };
    const Case cases[] = {
        {"@marco", "@marco_v", "@marco_v", "@marco_v"},             // the box ended before a "_v" set apart
        {"ID: 630182", "ID: 63018274", "ID: 63018274", "63018274"}, // …before the last digits
        {"@光影studio", "@光影_studio", "@光影_studio",
         "@光影_studio"},                             // a "_" the first reading did not see
        {"@marco", "@marco_v", "@marco_w", ""},       // the longer reading not repeated
        {"@marco", "@marco", "", "@marco"},           // the same: the stamp is whole
        {"@marco", "@maria", "", ""},                 // another name: neither is sure
        {"@marco", "@polo_marco", "@polo_marco", ""}, // longer, but not by what was dropped
    };
    for (const Case& c : cases) {
        QList<TextRecognition> script{{},
                                      lineAt(QString::fromUtf8(c.band), 0.7, 0.9),
                                      looked(QString::fromUtf8(c.first)),
                                      looked(QString::fromUtf8(c.second))};
        WatermarkReader reader(std::make_unique<ScriptedTextRecognizer>(script));
        const WatermarkReading reading = reader.read(greyPicture());
        EXPECT_EQ(reading.found ? reading.found->identifier : QString(), QString::fromUtf8(c.found))
            << c.band;
    }
}

TEST(WatermarkReader, ALineReadUnsureIsTakenOnlyWhenTwoCloserLooksReadItSureButForItsUnderscore)
{
    struct Case
    {
        const char* first;
        QList<float> firstSure; // empty: every character 0.95
        const char* second;
        const char* found;
    };
    const QString unsure = QStringLiteral("@marco_v");
    const Case cases[] = {
        {"@marco_v", {}, "@marco_v", "@marco_v"},
        // Only its "_" unsure again, the second look sure: a thin low stroke, read the same three times.
        {"@marco_v", {0.95f, 0.95f, 0.95f, 0.95f, 0.95f, 0.95f, 0.6f, 0.95f}, "@marco_v", "@marco_v"},
        {"@marco_v", {0.95f, 0.95f, 0.95f, 0.6f, 0.95f, 0.95f, 0.95f, 0.95f}, "@marco_v", ""}, // a letter
        {"@marco_v", {}, "@marcov", ""},
        {"@marco v", {}, "@marco v", ""}, // still a space: which of "_" or "." is not known
    };
    for (const Case& c : cases) {
        // The bottom band reads the "_" unsure, the contrast-raised copies read nothing.
        QList<TextRecognition> script{{},
                                      lineAt(unsure, 0.7, 0.9, 120, sureness(unsure, 6, 0.7f)),
                                      {},
                                      {},
                                      looked(QString::fromUtf8(c.first), c.firstSure),
                                      looked(QString::fromUtf8(c.second))};
        WatermarkReader reader(std::make_unique<ScriptedTextRecognizer>(script));
        const WatermarkReading reading = reader.read(greyPicture());
        EXPECT_EQ(reading.found ? reading.found->identifier : QString(), QString::fromUtf8(c.found))
            << c.first;
    }
}

TEST(WatermarkReader, AStampsLineIsReadAgainPaddedAndJoinedWithTheRestOfItsLine)
{
    // The detector split "@光影_Studio" at the "_" and cut both boxes tight; the padded reading of the two
    // boxes joined sees it whole. A line with no "@" or ID key is not read again.
    const TextRecognition split{
        {QStringLiteral("@光影"), QStringLiteral("Studio"), QStringLiteral("Coffee")},
        {},
        0.0,
        {QRect(1400, 120, 100, 40), QRect(1510, 122, 150, 38), QRect(200, 20, 200, 40)},
        {}};
    auto recognizer = std::make_unique<ScriptedTextRecognizer>(
        QList<TextRecognition>{{}, split, looked(QStringLiteral("@光影_Studio"))}, nullptr,
        QStringList{QStringLiteral("@光影_Studio"), QStringLiteral("@光影_Studio")});
    ScriptedTextRecognizer& fake = *recognizer;
    WatermarkReader reader(std::move(recognizer));
    const WatermarkReading reading = reader.read(greyPicture());
    ASSERT_TRUE(reading.found);
    EXPECT_EQ(reading.found->identifier, QStringLiteral("@光影_studio"));
    ASSERT_FALSE(fake.m_lineSizes.isEmpty());
    EXPECT_GE(fake.m_lineSizes[0].width(), 260); // both boxes and their padding
    EXPECT_GE(fake.m_lineSizes[0].height(), 50);
}

TEST(WatermarkReader, AnIdentifierIsTakenOnlyWhenNoReadingOfItsLineReadAnotherOne)
{
    struct Case
    {
        const char* plain;    // the bottom band, one character read unsure
        const char* enhanced; // the contrast-raised bottom band, read sure, and its closer look
        const char* found;
    };
    const Case cases[] = {
        {"@夏日汽水", "@夏目汽水", ""},                  // 日 or 目: not known which
        {"快手号：kk_20931", "快手号：kk20931", ""},     // the "_" the sure reading left out
        {"@夏日汽水", "@夏日汽水", "@夏日汽水"},         // read the same twice
        {"ID: 1029384", "ID: 1029384756", "1029384756"}, // the unsure one a part of it, cut off
        {"@秋水 Photo", "@秋水Photo", ""},               // a gap there: a "_" or "." the sure one left out
        {"@sora lens", "@sora_lens", "@sora_lens"},      // the gap is the "_" it read
    };
    for (const Case& c : cases) {
        const QString plain = QString::fromUtf8(c.plain), enhanced = QString::fromUtf8(c.enhanced);
        QList<TextRecognition> script{{},
                                      lineAt(plain, 0.7, 0.9, 120, sureness(plain, plain.size() - 3, 0.5f)),
                                      {},
                                      lineAt(enhanced, 0.7, 0.9),
                                      looked(enhanced)};
        WatermarkReader reader(std::make_unique<ScriptedTextRecognizer>(script),
                               [](const QImage& i) { return i; });
        const WatermarkReading reading = reader.read(greyPicture());
        EXPECT_EQ(reading.found ? reading.found->identifier : QString(), QString::fromUtf8(c.found))
            << c.plain;
    }
}

TEST(WatermarkReader, ACloserLookThatReadsNoOtherIdentifierLeavesItToTheBandReadAgain)
{
    struct Case
    {
        const char* look;  // the closer look at the line read sure in the bottom band
        const char* again; // the bottom band read again at another enlargement
        const char* found;
    };
    const Case cases[] = {
        {"@sora lens", "@sora_lens", "@sora_lens"}, // the "_" seen as a space up close
        {"@sora", "@sora_lens", "@sora_lens"},      // the crop cut the line
        {"@sora lens", "@sara_lens", ""},           // the band not read the same again
        {"@sara_lens", "@sora_lens", ""},           // another name up close
    };
    for (const Case& c : cases) {
        QList<TextRecognition> script{{},
                                      lineAt(QStringLiteral("@sora_lens"), 0.6, 0.8),
                                      looked(QString::fromUtf8(c.look)),
                                      TextRecognition{{QString::fromUtf8(c.again)}, {}}};
        WatermarkReader reader(std::make_unique<ScriptedTextRecognizer>(script));
        const WatermarkReading reading = reader.read(greyPicture());
        EXPECT_EQ(reading.found ? reading.found->identifier : QString(), QString::fromUtf8(c.found))
            << c.look;
    }
}

TEST(WatermarkReader, AStampWhoseEndRunsOntoAGroundAsLightAsItsLettersIsNotTaken)
{
    struct Case
    {
        QColor letters, ground; // the stamp's letters over grey, and the ground right after its line
        bool found;
    };
    const Case cases[] = {
        {Qt::white, Qt::white, false}, // its end may go on white on white
        {Qt::white, Qt::gray, true},   // more letters would show there
        {Qt::black, Qt::black, false}, // dark letters onto a dark ground
        {Qt::black, QColor(240, 240, 240), true},
    };
    for (const Case& c : cases) {
        QImage picture = greyPicture();
        // The line's box in the picture: the bottom band starts at 840 and is enlarged 1.2 times.
        const QRect line(800, 940, 240, 33);
        QPainter painter(&picture);
        for (int x = line.left() + 4; x < line.right() - 4; x += 12)
            painter.fillRect(QRect(x, line.top() + 6, 5, 21), c.letters);
        painter.fillRect(QRect(line.right() + 1, line.top() - 10, 120, 53), c.ground);
        painter.end();
        const QString stamp = QStringLiteral("ID: 630182");
        QList<TextRecognition> script{{}, lineAt(stamp, 0.5, 0.65), looked(stamp)};
        WatermarkReader reader(std::make_unique<ScriptedTextRecognizer>(script));
        EXPECT_EQ(bool(reader.read(picture).found), c.found)
            << c.letters.name().toStdString() << " on " << c.ground.name().toStdString();
    }
}

TEST(WatermarkReader, AnIdLinesKeyIsReadAgainWithItsAccountFartherOffThanALettersGap)
{
    struct Case
    {
        const char* first; // the detector's first box; the account's box starts `gap` line heights after it
        double gap;
        bool joined;
    };
    const Case cases[] = {
        {"ID:", 1.5, true},                             // the space after the colon, seen large
        {"抖音号：", 1.5, true}, {"@光影", 1.5, false}, // no key: a name and a word beside it
        {"ID:", 2.5, false},                            // too far off to be its account
        {"@光影", 0.5, true},                           // a "_" left out between two boxes, as before
    };
    for (const Case& c : cases) {
        const int h = 40, gap = int(c.gap * h);
        const TextRecognition split{{QString::fromUtf8(c.first), QStringLiteral("1029384756")},
                                    {},
                                    0.0,
                                    {QRect(1000, 120, 100, h), QRect(1100 + gap, 120, 300, h)},
                                    {}};
        auto recognizer = std::make_unique<ScriptedTextRecognizer>(
            QList<TextRecognition>{{}, split}, nullptr, QStringList{QStringLiteral("ID: 1029384756")});
        ScriptedTextRecognizer& fake = *recognizer;
        WatermarkReader reader(std::move(recognizer));
        reader.read(greyPicture());
        ASSERT_FALSE(fake.m_lineSizes.isEmpty()) << c.first;
        EXPECT_EQ(fake.m_lineSizes[0].width() > 400 + gap, c.joined) << c.first << " " << c.gap;
    }
}

TEST(WatermarkReader, TheDetectorsOwnReadingOfALineCountsAsALookAtIt)
{
    struct Case
    {
        const char* detected; // the bottom band's line as the detector's reading read it
        qsizetype weak;       // its character read unsure, -1 for none
        const char* padded;   // the same line read again padded, and each closer look at it
        const char* found;
    };
    const Case cases[] = {
        {"@秋水_Photo", 3, "@秋水Photo", ""},   // the "_" only the first reading saw
        {"@夏目汽水", 2, "@夏日汽水", ""},      // 日 or 目: not known which
        {"@marco", -1, "@marco_v", "@marco_v"}, // the first reading's box cut the end off
        {"@秋水_Photo", 3, "@秋水_Photo", "@秋水_photo"},
    };
    for (const Case& c : cases) {
        const QString detected = QString::fromUtf8(c.detected), padded = QString::fromUtf8(c.padded);
        QList<TextRecognition> script{{},
                                      lineAt(detected, 0.7, 0.9, 120, sureness(detected, c.weak, 0.6f)),
                                      looked(padded),
                                      looked(padded)};
        WatermarkReader reader(
            std::make_unique<ScriptedTextRecognizer>(script, nullptr, QStringList{padded, padded, padded}));
        const WatermarkReading reading = reader.read(greyPicture());
        EXPECT_EQ(reading.found ? reading.found->identifier : QString(), QString::fromUtf8(c.found))
            << c.detected << " then " << c.padded;
    }
}

TEST(WatermarkReader, AReadingOfTheLineThatLostCharactersWhereItWasUnsureDoesNotStandAgainstASureOne)
{
    struct Case
    {
        const char* detected;        // the line as the detector's reading read it, in both bands
        qsizetype detectedWeak;      // its character read unsure, -1 for none
        const char* padded;          // the same line read again padded
        QList<qsizetype> paddedWeak; // its characters read unsure
        const char* found;
    };
    const Case cases[] = {
        {"ID: 63018274", -1, "ID: 63018274", {}, "63018274"},
        // The detector's "g" a guess, the padded reading sure of its "q": g or q, not known which.
        {"抖音号：dy2045xg", 11, "抖音号：dy2045xq", {}, ""},
        {"抖音号：dy2045xq", -1, "抖音号：dy2045q", {10}, "dy2045xq"}, // the "x" lost beside a "q" unsure
        {"抖音号：dy2045xq", -1, "抖音号：dy2045xg", {11}, ""},        // its "q" read "g", however unsure
        // The padded reading, its letters smaller, lost an "i" beside a letter it was unsure of: the
        // detector's sure reading stands.
        {"@jin.li.film", -1, "@jin.li.flm", {9}, "@jin.li.film"},
        {"@jin.li.film", -1, "@jim.li.film", {}, ""},       // another name read sure
        {"@jin.li.film", -1, "@jin.li.flm", {}, ""},        // the "i" left out where it was sure
        {"@光影studio", -1, "@光影_studio", {3}, ""},       // a "_" it saw, however unsure
        {"@光影studio", -1, "@光影studio", {3}, ""},        // the same name, unsure where a "_" may be
        {"@jin.li.film", -1, "@jn.li.m", {1, 2, 6, 7}, ""}, // too much lost
    };
    for (const Case& c : cases) {
        const QString detected = QString::fromUtf8(c.detected), padded = QString::fromUtf8(c.padded);
        const TextRecognition band =
            lineAt(detected, 0.7, 0.95, 120, sureness(detected, c.detectedWeak, 0.6f));
        QList<float> paddedSure(padded.size(), 0.95f);
        for (const qsizetype weak : c.paddedWeak)
            paddedSure[weak] = 0.5f;
        WatermarkReader reader(std::make_unique<ScriptedTextRecognizer>(
            QList<TextRecognition>{band, band}, nullptr, QStringList{padded, padded},
            QList<QList<float>>{paddedSure, paddedSure}));
        const WatermarkReading reading = reader.read(greyPicture());
        EXPECT_EQ(reading.found ? reading.found->identifier : QString(), QString::fromUtf8(c.found))
            << c.detected << " then " << c.padded;
    }
}

TEST(WatermarkReader, ALineReadUnsureIsStillLookedAtWhenTheLineReadSureIsNotConfirmed)
{
    struct Case
    {
        const char* confirming; // the closer look at the bottom band's sure line
        const char* first;      // the two closer looks at the top band's line read unsure
        const char* second;
        const char* found;
    };
    const Case cases[] = {
        {"@hello", "", "", "@hello"},                   // the sure line confirmed
        {"@hellu", "@marco_v", "@marco_v", "@marco_v"}, // not confirmed: the unsure line read sure twice
        {"@hellu", "@marco_v", "@marcc_v", ""},         // the two looks read otherwise
    };
    for (const Case& c : cases) {
        const QString unsure = QStringLiteral("@marco_v");
        QList<TextRecognition> script{
            lineAt(unsure, 0.1, 0.3, 120, sureness(unsure, 3, 0.5f)),
            lineAt(QStringLiteral("@hello"), 0.7, 0.9), looked(QString::fromUtf8(c.confirming)),
            looked(QString::fromUtf8(c.first)), looked(QString::fromUtf8(c.second))};
        WatermarkReader reader(std::make_unique<ScriptedTextRecognizer>(script));
        const WatermarkReading reading = reader.read(greyPicture());
        EXPECT_EQ(reading.found ? reading.found->identifier : QString(), QString::fromUtf8(c.found))
            << c.confirming << " " << c.first << " " << c.second;
    }
}

TEST(WatermarkReader, ANameOrAccountReadWithoutItsMarkIsTakenOnlyWhenBothCloserLooksReadTheMarkSure)
{
    struct Case
    {
        const char* band; // read sure in the bottom band, nothing else read
        const char* first;
        qsizetype mark; // the first closer look's "@" or key character
        float markSure; // how sure it was of it
        const char* second;
        const char* found;
    };
    const Case cases[] = {
        {"南山南", "@南山南", 0, 0.95f, "@南山南", "@南山南"}, // the "@" dropped in the band, seen up close
        {"南山南", "@南山南", 0, 0.5f, "@南山南", ""},         // an "@" the reader was unsure of
        {"南山南", "南山南", 0, 0.95f, "南山南", ""},          // no "@" up close either: a word
        {"南山南", "@南山南", 0, 0.95f, "@南山雨", ""},        // the two looks read other names
        {"40918273", "号：40918273", 0, 0.95f, "号：40918273", "40918273"}, // the key dropped
        {"40918273", "号：40918273", 0, 0.4f, "号：40918273", ""},
        {"40918273", "40918273", 0, 0.95f, "40918273", ""}, // a number alone: a price, a plate
        {"Coffee", "@Coffee", 0, 0.95f, "@Coffee", ""},     // a Latin word alone is not looked at
    };
    for (const Case& c : cases) {
        const QString first = QString::fromUtf8(c.first), second = QString::fromUtf8(c.second);
        QList<TextRecognition> script{{},
                                      lineAt(QString::fromUtf8(c.band), 0.8, 0.9),
                                      {},
                                      {},
                                      looked(first, sureness(first, c.mark, c.markSure)),
                                      looked(second, sureness(second, -1, 0.f))};
        WatermarkReader reader(std::make_unique<ScriptedTextRecognizer>(script),
                               [](const QImage& i) { return i; });
        const WatermarkReading reading = reader.read(greyPicture());
        EXPECT_EQ(reading.found ? reading.found->identifier : QString(), QString::fromUtf8(c.found))
            << c.band << " " << c.first << " " << c.second;
    }
}

TEST(WatermarkReader, AnAccountAloneIsReadAgainWithRoomForTheKeyBeforeIt)
{
    struct Case
    {
        const char* again; // the line read again with room before it, and at the closer look
        const char* found;
    };
    const Case cases[] = {
        {"号：40918273", "40918273"}, // the key the detector's box left out
        {"40918273", ""},             // none there: a number alone
        {"@40918273", "@40918273"},   // an "@" read sure before it: a handle of digits
    };
    for (const Case& c : cases) {
        const QString again = QString::fromUtf8(c.again);
        auto recognizer = std::make_unique<ScriptedTextRecognizer>(
            QList<TextRecognition>{{},
                                   lineAt(QStringLiteral("40918273"), 0.6, 0.7),
                                   looked(QStringLiteral("40918273")),
                                   looked(QStringLiteral("40918273"))},
            nullptr, QStringList{again, again, again});
        ScriptedTextRecognizer& fake = *recognizer;
        WatermarkReader reader(std::move(recognizer), [](const QImage& i) { return i; });
        const WatermarkReading reading = reader.read(greyPicture());
        EXPECT_EQ(reading.found ? reading.found->identifier : QString(), QString::fromUtf8(c.found))
            << c.again;
        ASSERT_FALSE(fake.m_lineSizes.isEmpty());
        EXPECT_GE(fake.m_lineSizes[0].width(), 192 + 2 * 40); // the line and two line heights before it
    }
}
