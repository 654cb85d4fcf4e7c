// SPDX-License-Identifier: GPL-3.0-or-later
// The board index sheet tool: print the current folder as contact sheets into its `_index` (progress,
// cancel).
#pragma once

#include <QWidget>

#include <atomic>
#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QProgressBar;
class QPushButton;
class QSpinBox;

namespace lumaro::app {

class ToolHost;

// Main thread only. The sheets are made on a pool thread by vision::BoardSheetService, one run at a time;
// progress and the end come back as queued calls, dropped when the panel is gone.
class BoardSheetPanel : public QWidget
{
    Q_OBJECT
public:
    explicit BoardSheetPanel(ToolHost& host, QWidget* parent = nullptr);
    ~BoardSheetPanel() override;

private:
    void start();
    void setBusy(bool busy);

    ToolHost& m_host;
    QSpinBox* m_columns;
    QComboBox* m_paper;
    QCheckBox* m_pdf;
    QPushButton* m_startButton;
    QPushButton* m_cancelButton;
    QProgressBar* m_progress;
    QLabel* m_status;
    std::shared_ptr<std::atomic<bool>> m_cancel;
};

} // namespace lumaro::app
