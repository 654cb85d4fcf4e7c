// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ReportPanel.h"

#include "app/KeyBindingRow.h"
#include "app/ReportChartViews.h"
#include "app/ToolHost.h"
#include "browse/hotkeys/HistogramHotkey.h"
#include "browse/state/LMRModeState.h"
#include "platform/Log.h"
#include "platform/XattrTagStore.h"
#include "platform/files/FileNameCodec.h"
#include "report/ReportBuilder.h"
#include "report/ReportExport.h"
#include "report/ReportFacts.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QThreadPool>
#include <QVBoxLayout>

namespace lumaro::app {

namespace {

const QString kTag = QStringLiteral("REPORT_PANEL");

QString factsHtml(const report::ShootingReport& report)
{
    QString html;
    QString section;
    for (const report::ReportFact& fact : report::reportFacts(report)) {
        if (fact.section != section) {
            if (!section.isEmpty())
                html += QStringLiteral("</table>");
            section = fact.section;
            html += QStringLiteral("<h3>%1</h3><table>").arg(section.toHtmlEscaped());
        }
        html += QStringLiteral("<tr><td style='color:gray;padding-right:8px'>%1</td><td>%2</td></tr>")
                    .arg(fact.label.toHtmlEscaped(), fact.value.toHtmlEscaped());
    }
    return html + QStringLiteral("</table>");
}

} // namespace

ReportPanel::ReportPanel(ToolHost& host, browse::HistogramHotkey& histogramKey, QWidget* parent)
    : QWidget(parent), m_host(host), m_status(new QLabel(tr("为当前文件夹生成拍摄报告"), this)),
      m_deep(new QCheckBox(tr("含子文件夹"), this)), m_run(new QPushButton(tr("生成报告"), this)),
      m_html(new QPushButton(tr("导出 HTML…"), this)), m_pdf(new QPushButton(tr("导出 PDF…"), this)),
      m_progress(new QProgressBar(this)), m_facts(new QLabel(this))
{
    m_status->setWordWrap(true);
    m_facts->setWordWrap(true);
    m_facts->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_progress->hide();
    m_html->setEnabled(false);
    m_pdf->setEnabled(false);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_deep);
    buttons->addStretch();
    buttons->addWidget(m_run);
    auto* exports = new QHBoxLayout;
    exports->addWidget(m_html);
    exports->addWidget(m_pdf);

    auto* content = new QWidget;
    auto* contentLayout = new QVBoxLayout(content);
    contentLayout->addWidget(m_facts);
    m_charts = new QVBoxLayout;
    contentLayout->addLayout(m_charts);
    contentLayout->addStretch();
    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setWidget(content);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_status);
    layout->addLayout(buttons);
    layout->addWidget(m_progress);
    layout->addWidget(scroll, 1);
    layout->addLayout(exports);
    layout->addWidget(histogramKeyRow(histogramKey));

    connect(m_run, &QPushButton::clicked, this, [this] { isRunning() ? cancel() : run(); });
    connect(m_html, &QPushButton::clicked, this, [this] { exportTo(false); });
    connect(m_pdf, &QPushButton::clicked, this, [this] { exportTo(true); });
    connect(&m_host.modeState(), &browse::LMRModeState::historyChanged, this,
            &ReportPanel::rememberDeletions);
}

ReportPanel::~ReportPanel()
{
    cancel();
}

QWidget* ReportPanel::histogramKeyRow(browse::HistogramHotkey& histogramKey)
{
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* label = new QLabel(row);
    auto* recorder = new KeyRecorderButton(row);
    const auto refresh = [label, &histogramKey] {
        label->setText(tr("直方图快捷键: %1").arg(histogramKey.hotkey().displayText()));
    };
    refresh();
    layout->addWidget(label, 1);
    layout->addWidget(recorder);
    connect(&recorder->listener(), &browse::KeyListener::capturedKeyChanged, row,
            [this, recorder, refresh, &histogramKey] {
                const auto captured = recorder->listener().capturedKey();
                if (!captured)
                    return;
                if (const auto refused = histogramKey.set(*captured))
                    m_status->setText(tr("未更改直方图快捷键: ") + *refused);
                refresh();
                recorder->reset();
            });
    return row;
}

void ReportPanel::rememberDeletions()
{
    for (const browse::DeletedFileInfo& info : m_host.modeState().deletedFilesHistory())
        m_deleted.insert(QDir(info.folderPath).filePath(info.fileName));
}

int ReportPanel::deletedUnder(const QString& folder, bool deep) const
{
    int count = 0;
    for (const QString& path : m_deleted) {
        const QString parent = QFileInfo(path).path();
        const bool inside = parent == folder || (deep && parent.startsWith(folder + u'/'));
        // A picture put back since is not deleted.
        count += inside && !platform::FileNameCodec::exists(path) ? 1 : 0;
    }
    return count;
}

void ReportPanel::run()
{
    const auto folder = m_host.modeState().currentFolder();
    if (!folder) {
        m_status->setText(tr("请先打开一个文件夹"));
        return;
    }
    cancel();
    const quint64 run = ++m_runNumber;
    m_cancel = std::make_shared<std::atomic_bool>(false);
    m_run->setText(tr("取消"));
    m_progress->setRange(0, 0);
    m_progress->show();
    m_status->setText(tr("正在读取: %1").arg(*folder));

    QPointer<ReportPanel> self(this);
    const auto cancelled = m_cancel;
    const bool deep = m_deep->isChecked();
    const QString path = *folder;
    QThreadPool::globalInstance()->start([self, cancelled, deep, path, run] {
        QElapsedTimer sinceDraw;
        sinceDraw.start();
        const auto progress = [&](qsizetype done, qsizetype total) {
            // At most ten redraws a second, whatever the number of files.
            if (sinceDraw.elapsed() < 100 && done < total)
                return;
            sinceDraw.restart();
            QMetaObject::invokeMethod(
                qApp,
                [self, done, total] {
                    if (self && self->isRunning()) {
                        self->m_progress->setRange(0, int(total));
                        self->m_progress->setValue(int(done));
                    }
                },
                Qt::QueuedConnection);
        };
        QString problem;
        const auto scan = report::ShootScanner(platform::XattrTagStore::shared())
                              .scan(path, deep, cancelled.get(), progress, &problem);
        std::optional<report::ShootingReport> result;
        if (scan && !scan->cancelled)
            result = report::ReportBuilder::build(path, deep, *scan);
        QMetaObject::invokeMethod(
            qApp,
            [self, run, result, problem] {
                if (self)
                    self->present(run, result, problem);
            },
            Qt::QueuedConnection);
    });
}

void ReportPanel::cancel()
{
    if (m_cancel)
        *m_cancel = true;
    m_cancel.reset();
    m_run->setText(tr("生成报告"));
    m_progress->hide();
}

void ReportPanel::present(quint64 run, std::optional<report::ShootingReport> report, const QString& problem)
{
    if (run != m_runNumber || !isRunning())
        return; // cancelled, or overtaken by a newer run
    cancel();
    const QString folder = report ? report->folder : QString();
    if (!report) {
        m_status->setText(problem.isEmpty() ? tr("已取消") : tr("无法读取此文件夹: %1").arg(problem));
        Q_EMIT finished();
        return;
    }
    report->deletedThisSession = deletedUnder(folder, report->deep);
    platform::Log::line(
        kTag,
        QStringLiteral("✅ %1: %2 张（%3 个文件）").arg(folder).arg(report->exposures).arg(report->files));
    m_status->setText(tr("%1：%2 次曝光，%3 个文件")
                          .arg(QFileInfo(folder).fileName())
                          .arg(report->exposures)
                          .arg(report->files));
    m_facts->setText(factsHtml(*report));
    showCharts(*report);
    m_report = std::move(report);
    m_html->setEnabled(true);
    m_pdf->setEnabled(true);
    Q_EMIT finished();
}

void ReportPanel::showCharts(const report::ShootingReport& report)
{
    while (QLayoutItem* item = m_charts->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    for (QWidget* view : reportChartViews(report, this))
        m_charts->addWidget(view);
}

void ReportPanel::exportTo(bool pdf)
{
    if (!m_report)
        return;
    const QString suggested =
        QDir(m_report->folder)
            .filePath(pdf ? QStringLiteral("shooting-report.pdf") : QStringLiteral("shooting-report.html"));
    const QString path =
        QFileDialog::getSaveFileName(m_host.dialogParent(), pdf ? tr("导出 PDF") : tr("导出 HTML"), suggested,
                                     pdf ? tr("PDF (*.pdf)") : tr("HTML (*.html)"));
    if (path.isEmpty())
        return;
    // The save dialog has asked before replacing a file, so the answer stands.
    const auto problem = pdf ? report::ReportExport::writePdf(*m_report, path)
                             : report::ReportExport::writeHtml(*m_report, path);
    m_status->setText(problem ? tr("导出失败: %1").arg(*problem) : tr("已导出: %1").arg(path));
}

} // namespace lumaro::app
