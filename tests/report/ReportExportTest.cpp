// SPDX-License-Identifier: GPL-3.0-or-later
// The HTML is self-contained (inline SVG, no script) and the PDF renders;
// neither replaces someone's file.
#include "tests/report/ShootPictures.h"
#include "tests/report/ShootReport.h"

#include "report/ReportExport.h"

#include <QImage>
#include <QProcess>
#include <QStandardPaths>

#include <gtest/gtest.h>

namespace lumaro::report {
namespace {

ShootingReport smallShoot(testing::TempFolder& folder)
{
    for (int i = 0; i < 4; ++i) {
        testing::ExifTags shot =
            testing::cameraShot(QStringLiteral("2024:05:01 10:0%1:00").arg(i), QStringLiteral("5"), i + 1);
        shot.insert(QStringLiteral("Exif.Photo.FocalLengthIn35mmFilm"), QString::number(24 + 10 * i));
        shot.insert(QStringLiteral("Exif.Photo.ISOSpeedRatings"), QStringLiteral("200"));
        shot.insert(QStringLiteral("Exif.Photo.FNumber"), QStringLiteral("4/1"));
        testing::writeShot(folder, QStringLiteral("shoot/<b>IMG_%1.JPG").arg(i), shot);
    }
    return testing::reportOf(folder.filePath(QStringLiteral("shoot")));
}

TEST(ReportExport, HtmlIsSelfContainedWithEveryChartInline)
{
    testing::TempFolder folder;
    const QString html = ReportExport::html(smallShoot(folder));
    EXPECT_FALSE(html.contains(QStringLiteral("<script"), Qt::CaseInsensitive));
    EXPECT_FALSE(html.contains(QStringLiteral("http://"), Qt::CaseInsensitive) &&
                 html.count(QStringLiteral("http://")) !=
                     html.count(QStringLiteral("xmlns=\"http://www.w3.org/2000/svg\"")));
    // Timeline, focal lengths, orientation, ISO, aperture (no shutter speeds in
    // these files).
    EXPECT_EQ(html.count(QStringLiteral("<svg ")), 5);
    EXPECT_TRUE(html.contains(QStringLiteral("Focal lengths (35 mm equivalent)")));
    EXPECT_FALSE(html.contains(QStringLiteral("<b>IMG"))); // names are escaped
}

TEST(ReportExport, ReplacesOnlyItsOwnReports)
{
    testing::TempFolder folder;
    const ShootingReport report = smallShoot(folder);
    const QString html = folder.filePath(QStringLiteral("r.html"));
    const QString pdf = folder.filePath(QStringLiteral("r.pdf"));
    ASSERT_FALSE(ReportExport::writeHtml(report, html));
    ASSERT_FALSE(ReportExport::writePdf(report, pdf));
    EXPECT_TRUE(ReportExport::isReportFile(html));
    EXPECT_TRUE(ReportExport::isReportFile(pdf));
    EXPECT_FALSE(
        ReportExport::isReportFile(folder.write(QStringLiteral("notes.html"), "<html>my notes</html>")));
    EXPECT_FALSE(ReportExport::isReportFile(folder.filePath(QStringLiteral("missing.pdf"))));
}

TEST(ReportExport, PdfRendersWithPoppler)
{
    const QString pdftoppm = QStandardPaths::findExecutable(QStringLiteral("pdftoppm"));
    if (pdftoppm.isEmpty())
        GTEST_SKIP() << "pdftoppm (poppler-utils) is not installed";
    testing::TempFolder folder;
    const QString pdf = folder.filePath(QStringLiteral("r.pdf"));
    ASSERT_FALSE(ReportExport::writePdf(smallShoot(folder), pdf));
    QProcess render;
    render.start(pdftoppm, {QStringLiteral("-png"), QStringLiteral("-r"), QStringLiteral("40"), pdf,
                            folder.filePath(QStringLiteral("page"))});
    ASSERT_TRUE(render.waitForFinished(60000));
    EXPECT_EQ(render.exitCode(), 0) << render.readAllStandardError().toStdString();
    // The pages are not blank: the charts' coloured bars are on them.
    int pages = 0;
    int coloured = 0;
    for (const QString& name : folder.entries()) {
        const QImage page(folder.filePath(name));
        if (!name.startsWith(QLatin1String("page-")) || page.isNull())
            continue;
        ++pages;
        for (int y = 0; y < page.height(); ++y)
            for (int x = 0; x < page.width(); ++x) {
                const QColor c = page.pixelColor(x, y);
                coloured += std::abs(c.red() - c.blue()) > 60 ? 1 : 0;
            }
    }
    EXPECT_GE(pages, 1);
    EXPECT_GT(coloured, 200);
}

} // namespace
} // namespace lumaro::report
