// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/WatermarkReader.h"

#include "platform/vision/TextRecognizer.h"

#include <gtest/gtest.h>

using namespace lumaro::vision;
using lumaro::platform::TextRecognition;

namespace {

// Answers each reading with the next of a script, in the reader's region order (top left, top right, bottom
// left, bottom right, bottom centre, then any second readings); nothing once the script is spent.
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

// A line whose box spans [left, right) of the enlarged region's width, away from its top and bottom.
TextRecognition lineAt(const QString& text, double left, double right)
{
    // Every region of a 1600 × 1000 picture is 800 × 160, enlarged 1.2 times to 960 × 192.
    const QRect box(int(left * 960), 120, int((right - left) * 960), 40);
    return TextRecognition{{text}, {}, 0.0, {box}};
}

} // namespace

TEST(WatermarkReader, AStampCutByARegionsEdgeIsReadFromTheRegionThatHoldsItWhole)
{
    // A stamp in the middle of the bottom edge: the bottom-left region ends inside it and misreads the half
    // character it ends on, the bottom-right one starts inside it; only the middle one holds it whole.
    QList<TextRecognition> script{{},
                                  {},
                                  lineAt(QStringLiteral("@小唐"), 0.8, 1.0),
                                  lineAt(QStringLiteral("@鹿摄影"), 0.0, 0.2),
                                  lineAt(QStringLiteral("@小鹿摄影"), 0.3, 0.7),
                                  lineAt(QStringLiteral("@小鹿摄影"), 0.3, 0.7)};
    WatermarkReader reader(std::make_unique<ScriptedTextRecognizer>(script));
    const WatermarkReading reading = reader.read(greyPicture());
    ASSERT_TRUE(reading.found);
    EXPECT_EQ(reading.found->identifier, QStringLiteral("@小鹿摄影"));
}

TEST(WatermarkReader, ALineAtThePicturesOwnEdgeIsNotCut)
{
    // Bottom right: the line ends at the region's right edge, which is the picture's; read there and in the
    // middle region.
    QList<TextRecognition> script{{},
                                  {},
                                  {},
                                  lineAt(QStringLiteral("ID: 12345678"), 0.7, 1.0),
                                  lineAt(QStringLiteral("ID: 12345678"), 0.45, 0.75)};
    WatermarkReader reader(std::make_unique<ScriptedTextRecognizer>(script));
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
    EXPECT_EQ(calls, 5);
}
