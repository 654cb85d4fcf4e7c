// SPDX-License-Identifier: GPL-3.0-or-later
// The watermark tool: read the poster identifiers of the current folder (progress, cancel), sort the
// pictures into one folder per poster (preview first, move or copy), and undo the last sort.
#pragma once

#include "vision/WatermarkResult.h"

#include <QList>
#include <QString>
#include <QWidget>

#include <atomic>
#include <memory>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace lumaro::app {

class ToolHost;

// Main thread only. Reading runs on a pool thread, one run at a time; progress and the end come back as
// queued calls and are dropped when the panel is gone or the folder has changed since. Sorting uses the
// results of the last reading of the shown folder only; the rules live in vision::WatermarkService and
// vision::WatermarkSorter.
class WatermarkPanel : public QWidget
{
    Q_OBJECT
public:
    explicit WatermarkPanel(ToolHost& host, QWidget* parent = nullptr);
    ~WatermarkPanel() override;

private:
    void read();
    void sort(bool dryRun);
    void undo();
    void setBusy(bool busy);
    void forget();

    ToolHost& m_host;
    QPushButton* m_readButton;
    QCheckBox* m_allPictures;
    QPushButton* m_cancelButton;
    QProgressBar* m_progress;
    QLineEdit* m_target;
    QCheckBox* m_copy;
    QPushButton* m_previewButton;
    QPushButton* m_sortButton;
    QPushButton* m_undoButton;
    QLabel* m_status;
    QPlainTextEdit* m_details;
    std::shared_ptr<std::atomic<bool>> m_cancel;
    QString m_readFolder; // the folder m_results belong to
    QList<vision::WatermarkResult> m_results;
    QString m_lastLog;
};

} // namespace lumaro::app
