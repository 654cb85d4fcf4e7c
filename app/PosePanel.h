// SPDX-License-Identifier: GPL-3.0-or-later
// The pose tool: each person of the selected picture with its level-1 and level-2 verdicts, reasons and action,
// and the joints drawn over a preview.
#pragma once

#include "pose/PicturePoseAnalyzer.h"

#include <QImage>
#include <QString>
#include <QWidget>

#include <memory>
#include <mutex>

class QLabel;
class QPlainTextEdit;

namespace lumaro::app {

class PoseOverlayView;
class ToolHost;

// Main thread only. Follows the selection while the panel is visible; the detection runs on a pool thread,
// one picture at a time, and a result for a picture that is no longer selected is dropped. Without a pose
// model the panel says so and the rest of the app is unaffected.
class PosePanel : public QWidget
{
    Q_OBJECT
public:
    explicit PosePanel(ToolHost& host, QWidget* parent = nullptr);
    ~PosePanel() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct Outcome;
    void analyseSelection();
    void present(const QString& path, const Outcome& outcome);

    ToolHost& m_host;
    QLabel* m_status;
    PoseOverlayView* m_overlay;
    QPlainTextEdit* m_details;
    // Shared with the worker; its mutex keeps one analysis at a time.
    struct Worker;
    std::shared_ptr<Worker> m_worker;
    QString m_wanted;  // the picture whose result is awaited
    QString m_shown;   // the picture on display
    bool m_running = false;
};

} // namespace lumaro::app
