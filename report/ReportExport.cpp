// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ReportExport.h"

#include "report/ReportCharts.h"
#include "report/ReportFacts.h"

#include <QFile>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QSvgRenderer>

namespace lumaro::report {

namespace {

const char* kStyle =
    "body{font-family:sans-serif;margin:2em auto;max-width:60em;color:#222}"
    "h1{font-size:1.6em}h2{font-size:1.2em;margin-top:1.6em;border-bottom:1px solid #ccc}"
    "table{border-collapse:collapse}td{padding:.2em .8em .2em 0;vertical-align:top}"
    "td:first-child{color:#555}figure{margin:1em 0}figcaption{font-weight:bold;margin-bottom:.3em}"
    "svg{max-width:100%;height:auto;border:1px solid #eee}";

std::optional<QString> commit(QSaveFile& file)
{
    if (!file.commit())
        return file.errorString();
    return std::nullopt;
}

class PdfPage
{
public:
    explicit PdfPage(QPdfWriter& writer)
        : m_writer(writer), m_painter(&writer), m_width(writer.width()), m_height(writer.height())
    {
    }

    bool isActive() const { return m_painter.isActive(); }

    void title(const QString& text)
    {
        QFont font = m_painter.font();
        font.setPointSizeF(18);
        font.setBold(true);
        line(text, font, 1.6);
    }

    void heading(const QString& text)
    {
        QFont font = m_painter.font();
        font.setPointSizeF(12);
        font.setBold(true);
        m_y += lineHeight(font) * 0.5;
        line(text, font, 1.4);
    }

    void fact(const QString& label, const QString& value)
    {
        QFont font = m_painter.font();
        font.setPointSizeF(9);
        font.setBold(false);
        m_painter.setFont(font);
        const QRect labelBox(0, 0, m_width / 3 - 20, m_height);
        const QRect valueBox(0, 0, m_width * 2 / 3, m_height);
        const int height = std::max(m_painter.boundingRect(labelBox, Qt::TextWordWrap, label).height(),
                                    m_painter.boundingRect(valueBox, Qt::TextWordWrap, value).height());
        room(height);
        m_painter.setPen(QColor(0x55, 0x55, 0x55));
        m_painter.drawText(QRect(0, m_y, labelBox.width(), height), Qt::TextWordWrap, label);
        m_painter.setPen(Qt::black);
        m_painter.drawText(QRect(m_width / 3, m_y, valueBox.width(), height), Qt::TextWordWrap, value);
        m_y += height;
    }

    void chart(const ReportChart& chart)
    {
        QSvgRenderer svg(chart.svg.toUtf8());
        const QSizeF size = svg.defaultSize();
        const int height = int(m_width * size.height() / size.width());
        QFont font = m_painter.font();
        font.setPointSizeF(10);
        font.setBold(true);
        room(lineHeight(font) * 1.4 + height);
        line(chart.title, font, 1.4);
        svg.render(&m_painter, QRectF(0, m_y, m_width, height));
        m_y += height + lineHeight(font);
    }

private:
    int lineHeight(const QFont& font)
    {
        m_painter.setFont(font);
        return m_painter.fontMetrics().height();
    }

    void line(const QString& text, const QFont& font, double spacing)
    {
        const int height = int(lineHeight(font) * spacing);
        room(height);
        m_painter.setPen(Qt::black);
        m_painter.drawText(QRect(0, m_y, m_width, height), Qt::AlignLeft | Qt::AlignVCenter, text);
        m_y += height;
    }

    void room(int height)
    {
        if (m_y + height <= m_height || m_y == 0)
            return;
        m_writer.newPage();
        m_y = 0;
    }

    QPdfWriter& m_writer;
    QPainter m_painter;
    int m_width;
    int m_height;
    int m_y = 0;
};

} // namespace

QString ReportExport::html(const ShootingReport& report)
{
    QString page =
        QStringLiteral("<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\">"
                       "<meta name=\"generator\" content=\"%1\"><title>%2</title><style>%3</style>"
                       "</head><body>\n<h1>%2</h1>\n")
            .arg(marker, QString(QStringLiteral("Shooting report — ") + report.folder).toHtmlEscaped(),
                 QLatin1String(kStyle));
    QString section;
    for (const ReportFact& fact : reportFacts(report)) {
        if (fact.section != section) {
            if (!section.isEmpty())
                page += QStringLiteral("</table>\n");
            section = fact.section;
            page += QStringLiteral("<h2>%1</h2>\n<table>\n").arg(section.toHtmlEscaped());
        }
        page += QStringLiteral("<tr><td>%1</td><td>%2</td></tr>\n")
                    .arg(fact.label.toHtmlEscaped(), fact.value.toHtmlEscaped());
    }
    if (!section.isEmpty())
        page += QStringLiteral("</table>\n");
    page += QStringLiteral("<h2>Charts</h2>\n");
    for (const ReportChart& chart : reportCharts(report))
        page += QStringLiteral("<figure><figcaption>%1</figcaption>%2</figure>\n")
                    .arg(chart.title.toHtmlEscaped(), chart.svg);
    return page + QStringLiteral("</body></html>\n");
}

std::optional<QString> ReportExport::writeHtml(const ShootingReport& report, const QString& path)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    file.write(html(report).toUtf8());
    return commit(file);
}

std::optional<QString> ReportExport::writePdf(const ShootingReport& report, const QString& path)
{
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return file.errorString();
    {
        QPdfWriter writer(&file);
        writer.setPageSize(QPageSize(QPageSize::A4));
        writer.setPageMargins(QMarginsF(15, 15, 15, 15), QPageLayout::Millimeter);
        writer.setResolution(300);
        writer.setTitle(QStringLiteral("Shooting report — ") + report.folder);
        writer.setCreator(marker);
        PdfPage page(writer);
        if (!page.isActive()) {
            file.cancelWriting();
            return QStringLiteral("cannot paint the PDF");
        }
        page.title(QStringLiteral("Shooting report"));
        QString section;
        for (const ReportFact& fact : reportFacts(report)) {
            if (fact.section != section) {
                section = fact.section;
                page.heading(section);
            }
            page.fact(fact.label, fact.value);
        }
        page.heading(QStringLiteral("Charts"));
        for (const ReportChart& chart : reportCharts(report))
            page.chart(chart);
    }
    return commit(file);
}

bool ReportExport::isReportFile(const QString& path)
{
    QFile file(path);
    // Reports are small; a big file is some other document.
    if (file.size() > (64 << 20) || !file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray head = file.readAll();
    const QByteArray utf16(reinterpret_cast<const char*>(marker.utf16()), marker.size() * 2);
    QByteArray utf16be;
    for (const QChar c : marker)
        utf16be.append(char(c.unicode() >> 8)).append(char(c.unicode() & 0xff));
    return head.contains(marker.toUtf8()) || head.contains(utf16be) || head.contains(utf16);
}

} // namespace lumaro::report
