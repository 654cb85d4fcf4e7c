// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ReportChartViews.h"

#include <QtCharts/QBarCategoryAxis>
#include <QtCharts/QBarSeries>
#include <QtCharts/QBarSet>
#include <QtCharts/QChart>
#include <QtCharts/QChartView>
#include <QtCharts/QDateTimeAxis>
#include <QtCharts/QLineSeries>
#include <QtCharts/QPieSeries>
#include <QtCharts/QValueAxis>

namespace lumaro::app {

namespace {

QChartView* viewOf(QChart* chart, const QString& title, QWidget* parent)
{
    chart->setTitle(title);
    chart->legend()->setVisible(false);
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->setMargins(QMargins(4, 4, 4, 4));
    auto* view = new QChartView(chart, parent);
    view->setRenderHint(QPainter::Antialiasing);
    view->setMinimumHeight(220);
    return view;
}

QChartView* barView(const QList<report::CountedValue>& values, const QString& title, const QColor& colour,
                    QWidget* parent)
{
    auto* set = new QBarSet(title);
    set->setColor(colour);
    QStringList labels;
    int maximum = 1;
    for (const report::CountedValue& value : values) {
        *set << value.count;
        labels << value.label;
        maximum = std::max(maximum, value.count);
    }
    auto* series = new QBarSeries;
    series->append(set);
    series->setLabelsVisible(true);
    series->setLabelsPosition(QAbstractBarSeries::LabelsInsideEnd);
    set->setLabelColor(Qt::white);
    auto* chart = new QChart;
    chart->addSeries(series);
    auto* x = new QBarCategoryAxis;
    x->append(labels);
    if (labels.size() > 8)
        x->setLabelsAngle(-45);
    auto* y = new QValueAxis;
    y->setRange(0, maximum * 1.15);
    y->setLabelFormat(QStringLiteral("%d"));
    y->applyNiceNumbers();
    chart->addAxis(x, Qt::AlignBottom);
    chart->addAxis(y, Qt::AlignLeft);
    series->attachAxis(x);
    series->attachAxis(y);
    return viewOf(chart, title, parent);
}

QChartView* timelineView(const report::ShootingReport& report, QWidget* parent)
{
    // A step line, zero between the minutes without a picture, so breaks show as breaks.
    auto* series = new QLineSeries;
    series->setColor(QColor(0x2f, 0x6f, 0xb3));
    qint64 previousEnd = -1;
    int maximum = 1;
    for (const report::MinuteCount& minute : report.timeline) {
        // The axis shows local time; camera times carry no zone, so read them as local to show them as
        // written.
        const qint64 start =
            QDateTime(minute.minute.date(), minute.minute.time(), Qt::LocalTime).toMSecsSinceEpoch();
        if (previousEnd >= 0 && start > previousEnd) {
            series->append(double(previousEnd), 0);
            series->append(double(start), 0);
        } else if (previousEnd < 0) {
            series->append(double(start), 0);
        }
        series->append(double(start), minute.count);
        series->append(double(start + 60000), minute.count);
        previousEnd = start + 60000;
        maximum = std::max(maximum, minute.count);
    }
    series->append(double(previousEnd), 0);
    auto* chart = new QChart;
    chart->addSeries(series);
    auto* x = new QDateTimeAxis;
    x->setFormat(report.shootingMinutes > 24 * 60 ? QStringLiteral("MM-dd HH:mm") : QStringLiteral("HH:mm"));
    auto* y = new QValueAxis;
    y->setRange(0, maximum * 1.1);
    y->setLabelFormat(QStringLiteral("%d"));
    y->applyNiceNumbers();
    chart->addAxis(x, Qt::AlignBottom);
    chart->addAxis(y, Qt::AlignLeft);
    series->attachAxis(x);
    series->attachAxis(y);
    return viewOf(chart, QObject::tr("每分钟张数"), parent);
}

QChartView* orientationView(const report::ShootingReport& report, QWidget* parent)
{
    auto* series = new QPieSeries;
    const std::tuple<QString, int, QColor> parts[] = {
        {QObject::tr("横幅"), report.landscape, QColor(0x2f, 0x6f, 0xb3)},
        {QObject::tr("竖幅"), report.portrait, QColor(0xe0, 0x8a, 0x1e)},
        {QObject::tr("方形"), report.square, QColor(0x4a, 0x9a, 0x4a)},
        {QObject::tr("未知"), report.orientationUnknown, QColor(0xaa, 0xaa, 0xaa)}};
    for (const auto& [label, count, colour] : parts) {
        if (count == 0)
            continue;
        QPieSlice* slice = series->append(QStringLiteral("%1 %2").arg(label).arg(count), count);
        slice->setColor(colour);
        slice->setLabelVisible(true);
    }
    auto* chart = new QChart;
    chart->addSeries(series);
    QChartView* view = viewOf(chart, QObject::tr("横竖幅"), parent);
    for (QPieSlice* slice : series->slices())
        slice->setLabel(QStringLiteral("%1 (%2%)")
                            .arg(slice->label())
                            .arg(QString::number(100.0 * slice->percentage(), 'f', 1)));
    return view;
}

} // namespace

QList<QWidget*> reportChartViews(const report::ShootingReport& report, QWidget* parent)
{
    QList<QWidget*> views;
    if (!report.timeline.isEmpty())
        views << timelineView(report, parent);
    if (!report.focalLengths.isEmpty())
        views << barView(report.focalLengths,
                         report.focalLengthsAre35mm ? QObject::tr("焦距（等效 35 mm）") : QObject::tr("焦距"),
                         QColor(0x7a, 0x4f, 0xb3), parent);
    if (report.exposures > 0)
        views << orientationView(report, parent);
    if (!report.isos.isEmpty())
        views << barView(report.isos, QStringLiteral("ISO"), QColor(0xc0, 0x50, 0x4d), parent);
    if (!report.apertures.isEmpty())
        views << barView(report.apertures, QObject::tr("光圈"), QColor(0x4a, 0x9a, 0x4a), parent);
    if (!report.shutterSpeeds.isEmpty())
        views << barView(report.shutterSpeeds, QObject::tr("快门"), QColor(0xe0, 0x8a, 0x1e), parent);
    return views;
}

} // namespace lumaro::app
