// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ReportCharts.h"

#include <algorithm>

namespace lumaro::report {

namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 240;
constexpr int kLeft = 40;
constexpr int kRight = 10;
constexpr int kTop = 20;
constexpr int kBottom = 50;
constexpr int kPlotWidth = kWidth - kLeft - kRight;
constexpr int kPlotHeight = kHeight - kTop - kBottom;

QString header()
{
    return QStringLiteral(
               "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 %1 %2\" width=\"%1\" height=\"%2\" "
               "font-family=\"sans-serif\" font-size=\"11\">"
               "<rect width=\"%1\" height=\"%2\" fill=\"#ffffff\"/>")
        .arg(kWidth)
        .arg(kHeight);
}

QString axes(int maximum)
{
    return QStringLiteral("<line x1=\"%1\" y1=\"%2\" x2=\"%3\" y2=\"%2\" stroke=\"#888\"/>"
                          "<line x1=\"%1\" y1=\"%4\" x2=\"%1\" y2=\"%2\" stroke=\"#888\"/>"
                          "<text x=\"%5\" y=\"%6\" text-anchor=\"end\">%7</text>"
                          "<text x=\"%5\" y=\"%2\" text-anchor=\"end\">0</text>")
        .arg(kLeft)
        .arg(kTop + kPlotHeight)
        .arg(kLeft + kPlotWidth)
        .arg(kTop)
        .arg(kLeft - 4)
        .arg(kTop + 4)
        .arg(maximum);
}

QString number(double value)
{
    return QString::number(value, 'f', 1);
}

QString timelineSvg(const ShootingReport& report)
{
    const QList<MinuteCount>& minutes = report.timeline;
    const qint64 first = minutes.first().minute.toSecsSinceEpoch() / 60;
    const qint64 span = minutes.last().minute.toSecsSinceEpoch() / 60 - first + 1;
    int maximum = 0;
    for (const MinuteCount& minute : minutes)
        maximum = std::max(maximum, minute.count);
    const double step = double(kPlotWidth) / double(span);
    QString svg = header() + axes(maximum);
    for (const MinuteCount& minute : minutes) {
        const double height = double(kPlotHeight) * minute.count / maximum;
        const double x = kLeft + step * double(minute.minute.toSecsSinceEpoch() / 60 - first);
        svg += QStringLiteral("<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" fill=\"#2f6fb3\"/>")
                   .arg(number(x), number(kTop + kPlotHeight - height), number(std::max(1.0, step * 0.85)),
                        number(height));
    }
    const QString format = span > 24 * 60 ? QStringLiteral("yyyy-MM-dd HH:mm") : QStringLiteral("HH:mm");
    svg += QStringLiteral(
               "<text x=\"%1\" y=\"%2\">%3</text><text x=\"%4\" y=\"%2\" text-anchor=\"end\">%5</text>")
               .arg(kLeft)
               .arg(kTop + kPlotHeight + 16)
               .arg(minutes.first().minute.toString(format))
               .arg(kLeft + kPlotWidth)
               .arg(minutes.last().minute.toString(format));
    svg += QStringLiteral(
               "<text x=\"%1\" y=\"%2\" text-anchor=\"middle\" fill=\"#555\">pictures per minute</text>")
               .arg(kLeft + kPlotWidth / 2)
               .arg(kHeight - 8);
    return svg + QStringLiteral("</svg>");
}

QString orientationSvg(const ShootingReport& report)
{
    const QList<std::pair<QString, int>> parts{{QStringLiteral("landscape"), report.landscape},
                                               {QStringLiteral("portrait"), report.portrait},
                                               {QStringLiteral("square"), report.square},
                                               {QStringLiteral("unknown"), report.orientationUnknown}};
    static const char* colours[] = {"#2f6fb3", "#e08a1e", "#4a9a4a", "#aaaaaa"};
    const int total = report.landscape + report.portrait + report.square + report.orientationUnknown;
    QString svg = header();
    double x = kLeft;
    int legendY = 120;
    for (qsizetype i = 0; i < parts.size(); ++i) {
        if (parts.at(i).second == 0)
            continue;
        const double share = double(parts.at(i).second) / total;
        svg += QStringLiteral("<rect x=\"%1\" y=\"40\" width=\"%2\" height=\"50\" fill=\"%3\"/>")
                   .arg(number(x), number(share * kPlotWidth), QLatin1String(colours[i]));
        svg += QStringLiteral("<rect x=\"%1\" y=\"%2\" width=\"14\" height=\"14\" fill=\"%3\"/>"
                              "<text x=\"%4\" y=\"%5\" font-size=\"13\">%6: %7 (%8%)</text>")
                   .arg(kLeft)
                   .arg(legendY)
                   .arg(QLatin1String(colours[i]))
                   .arg(kLeft + 22)
                   .arg(legendY + 12)
                   .arg(parts.at(i).first)
                   .arg(parts.at(i).second)
                   .arg(QString::number(100.0 * share, 'f', 1));
        x += share * kPlotWidth;
        legendY += 24;
    }
    return svg + QStringLiteral("</svg>");
}

} // namespace

QString barChartSvg(const QList<CountedValue>& values, const QString& colour)
{
    int maximum = 1;
    for (const CountedValue& value : values)
        maximum = std::max(maximum, value.count);
    const double slot = double(kPlotWidth) / double(std::max<qsizetype>(1, values.size()));
    // Many bars: the labels turn, so that they do not run into each other.
    const bool turned = slot < 48;
    QString svg = header() + axes(maximum);
    for (qsizetype i = 0; i < values.size(); ++i) {
        const CountedValue& value = values.at(i);
        const double height = double(kPlotHeight) * value.count / maximum;
        const double x = kLeft + slot * double(i);
        const double middle = x + slot / 2;
        const double top = kTop + kPlotHeight - height;
        svg += QStringLiteral("<rect x=\"%1\" y=\"%2\" width=\"%3\" height=\"%4\" fill=\"%5\"/>")
                   .arg(number(x + slot * 0.1), number(top), number(slot * 0.8), number(height), colour);
        svg += QStringLiteral("<text x=\"%1\" y=\"%2\" text-anchor=\"middle\">%3</text>")
                   .arg(number(middle), number(top - 3))
                   .arg(value.count);
        const double labelY = kTop + kPlotHeight + 14;
        if (turned)
            svg +=
                QStringLiteral(
                    "<text x=\"%1\" y=\"%2\" text-anchor=\"end\" transform=\"rotate(-40 %1 %2)\">%3</text>")
                    .arg(number(middle), number(labelY), value.label.toHtmlEscaped());
        else
            svg += QStringLiteral("<text x=\"%1\" y=\"%2\" text-anchor=\"middle\">%3</text>")
                       .arg(number(middle), number(labelY), value.label.toHtmlEscaped());
    }
    return svg + QStringLiteral("</svg>");
}

QList<ReportChart> reportCharts(const ShootingReport& report)
{
    QList<ReportChart> charts;
    if (!report.timeline.isEmpty())
        charts << ReportChart{QStringLiteral("Pictures per minute"), timelineSvg(report)};
    if (!report.focalLengths.isEmpty())
        charts << ReportChart{report.focalLengthsAre35mm ? QStringLiteral("Focal lengths (35 mm equivalent)")
                                                         : QStringLiteral("Focal lengths"),
                              barChartSvg(report.focalLengths, QStringLiteral("#7a4fb3"))};
    if (report.exposures > 0)
        charts << ReportChart{QStringLiteral("Orientation"), orientationSvg(report)};
    if (!report.isos.isEmpty())
        charts << ReportChart{QStringLiteral("ISO"), barChartSvg(report.isos, QStringLiteral("#c0504d"))};
    if (!report.apertures.isEmpty())
        charts << ReportChart{QStringLiteral("Aperture"),
                              barChartSvg(report.apertures, QStringLiteral("#4a9a4a"))};
    if (!report.shutterSpeeds.isEmpty())
        charts << ReportChart{QStringLiteral("Shutter speed"),
                              barChartSvg(report.shutterSpeeds, QStringLiteral("#e08a1e"))};
    return charts;
}

} // namespace lumaro::report
