// SPDX-License-Identifier: GPL-3.0-or-later
// The shooting report tool: the report of the folder shown (or its tree) with its charts, and its export.
#pragma once

#include "report/ShootingReport.h"

#include <QSet>
#include <QString>
#include <QWidget>

#include <atomic>
#include <memory>

class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QVBoxLayout;

namespace lumaro::browse {
class HistogramHotkey;
}

namespace lumaro::app {

class KeyRecorderButton;
class ToolHost;

// Main thread. The headers are read on pool threads with progress and cancel; a run for a folder that is no
// longer shown is dropped. Pictures deleted from the window since it opened (and not put back) are counted.
class ReportPanel : public QWidget
{
    Q_OBJECT
public:
    ReportPanel(ToolHost& host, browse::HistogramHotkey& histogramKey, QWidget* parent = nullptr);
    ~ReportPanel() override;

    void run();
    void cancel();
    bool isRunning() const { return m_cancel != nullptr; }
    const std::optional<report::ShootingReport>& report() const { return m_report; }
    QPushButton& runButton() { return *m_run; }
    QCheckBox& deepBox() { return *m_deep; }

Q_SIGNALS:
    void finished();

private:
    void present(quint64 run, std::optional<report::ShootingReport> report, const QString& problem);
    void showCharts(const report::ShootingReport& report);
    void exportTo(bool pdf);
    void rememberDeletions();
    int deletedUnder(const QString& folder, bool deep) const;
    QWidget* histogramKeyRow(browse::HistogramHotkey& histogramKey);

    ToolHost& m_host;
    QLabel* m_status;
    QCheckBox* m_deep;
    QPushButton* m_run;
    QPushButton* m_html;
    QPushButton* m_pdf;
    QProgressBar* m_progress;
    QLabel* m_facts;
    QVBoxLayout* m_charts;
    std::shared_ptr<std::atomic_bool> m_cancel;
    quint64 m_runNumber = 0; // the run whose result is awaited; earlier runs' results are dropped
    std::optional<report::ShootingReport> m_report;
    QSet<QString> m_deleted; // full paths deleted from the window this session
};

} // namespace lumaro::app
