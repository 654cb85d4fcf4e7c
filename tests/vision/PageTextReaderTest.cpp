// SPDX-License-Identifier: GPL-3.0-or-later
// The Tesseract page reader inside a run whose workers already fill the cores.
#include "platform/vision/TesseractTextRecognizer.h"

#include <QDir>
#include <QFont>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

qsizetype threadCount()
{
    return QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

TEST(PageTextReader, ReadsInTheCallingThreadWithoutATeamOfItsOwn)
{
    const std::unique_ptr<lumaro::platform::TesseractTextRecognizer> reader =
        lumaro::platform::TesseractTextRecognizer::create();
    if (!reader)
        GTEST_SKIP() << "Tesseract with eng+chi_sim is not installed";
    QImage page(900, 300, QImage::Format_RGB32);
    page.fill(Qt::white);
    {
        QPainter painter(&page);
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(40);
        painter.setFont(font);
        painter.setPen(Qt::black);
        painter.drawText(40, 120, QStringLiteral("Harbour market opens at six"));
        painter.drawText(40, 200, QStringLiteral("Fresh mackerel and squid"));
    }
    const qsizetype before = threadCount();

    const QStringList lines = reader->recognize(page).lines;

    ASSERT_FALSE(lines.isEmpty());
    EXPECT_TRUE(lines.first().contains(QStringLiteral("market"))) << lines.first().toStdString();
    // OpenMP keeps a team's threads once made; every worker of a run made its own, spinning beside the
    // others.
    EXPECT_EQ(threadCount(), before);
}

} // namespace
