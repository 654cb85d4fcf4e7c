// SPDX-License-Identifier: GPL-3.0-or-later
// The installed PP-OCR text reader across pictures of both orientations.
#include "platform/vision/TextRecognizer.h"

#include "tests/support/ResidentMemory.h"
#include "tests/support/TempFolder.h"

#include <QFont>
#include <QFontMetrics>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

using lumaro::testing::residentBytes;

QImage pageOf(QSize size)
{
    QImage page(size, QImage::Format_RGB32);
    page.fill(Qt::white);
    QPainter painter(&page);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(36);
    painter.setFont(font);
    painter.setPen(QColor(30, 30, 30));
    painter.drawText(60, 120, QStringLiteral("Harbour market opens at six"));
    painter.drawText(60, 200, QStringLiteral("Fresh mackerel and squid"));
    return page;
}

QImage lineOf(const QString& text)
{
    QImage picture(2000, 200, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(36);
    painter.setFont(font);
    painter.setPen(QColor(30, 30, 30));
    painter.drawText(40, 110, text);
    return picture;
}

// The real line reader on the shared models; skipped, with the reason, where they are not beside the checkout.
class LineTextReader : public ::testing::Test
{
protected:
    void SetUp() override
    {
        const QString models = lumaro::testing::sharedModelsDir();
        if (models.isEmpty())
            GTEST_SKIP() << "no models: ../shared/models is not beside the checkout";
        qputenv("LUMARO_MODELS_DIR", models.toUtf8());
        reader = lumaro::platform::makeLineTextRecognizer();
        ASSERT_TRUE(reader);
    }

    std::unique_ptr<lumaro::platform::TextRecognizer> reader;
};

TEST_F(LineTextReader, UprightAndLyingPicturesInTurnShareOneDetectorAndReadTheSame)
{
    const QImage lying = pageOf({1200, 800});
    const QImage upright = pageOf({800, 1200});

    const QStringList first = reader->recognize(lying).lines;
    const qint64 before = residentBytes();
    const QStringList turned = reader->recognize(upright).lines;
    const qint64 grown = residentBytes() - before;
    const QStringList again = reader->recognize(lying).lines;

    ASSERT_FALSE(first.isEmpty());
    EXPECT_EQ(turned, first);
    EXPECT_EQ(again, first);
    // A second detector net for the other shape holds page-sized maps of about 200 MB.
    EXPECT_LT(grown, 80 << 20) << grown / (1 << 20) << " MB more after an upright picture";
}

TEST_F(LineTextReader, APictureTightAroundOneLineIsReadAsThatLine)
{
    // A stamp's line cut out with a little room around it: the detector's box hugs the letters and loses
    // the "_" under the baseline ("@marcov"); the line reading takes the whole picture and keeps it.
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(40);
    const QString text = QStringLiteral("@marco_v");
    const QRect bounds = QFontMetrics(font).tightBoundingRect(text);
    QImage line(bounds.size() + QSize(6, 6), QImage::Format_RGB32);
    line.fill(QColor(60, 90, 60));
    QPainter painter(&line);
    painter.setFont(font);
    painter.setPen(QColor(235, 235, 235));
    painter.drawText(3 - bounds.left(), 3 - bounds.top(), text);
    painter.end();

    const lumaro::platform::TextRecognition read = reader->readLine(line);
    ASSERT_EQ(read.lines, QStringList{text});
    EXPECT_EQ(read.boxes, QList<QRect>{line.rect()});
    EXPECT_FALSE(reader->readLine(QImage()).error.isEmpty());
}

TEST_F(LineTextReader, ALongLineIsReadInChunksWithoutANetOfItsWidth)
{
    const QString shortLine = QStringLiteral("Harbour market opens at six");
    const QString longLine =
        QStringLiteral("Harbour market opens at six and closes at noon on every second Sunday of the month");

    const QStringList first = reader->recognize(lineOf(shortLine)).lines;
    const qint64 before = residentBytes();
    const QStringList read = reader->recognize(lineOf(longLine)).lines;
    const qint64 grown = residentBytes() - before;

    // The recogniser leaves out the spaces between Latin words.
    const auto letters = [](QString line) { return line.remove(QLatin1Char(' ')).toStdString(); };
    ASSERT_EQ(first.size(), 1);
    EXPECT_EQ(letters(first.first()), letters(shortLine));
    ASSERT_EQ(read.size(), 1);
    EXPECT_EQ(letters(read.first()), letters(longLine));
    // A recogniser net 2560 wide holds about 60 MB for the rest of the run (the old code grew by 71 MB); the
    // pieces' own buffers take under 30 MB, up to 42 under the address sanitizer, which keeps freed blocks.
    EXPECT_LT(grown, 50 << 20) << grown / (1 << 20) << " MB more after a long line";
}

} // namespace
