// SPDX-License-Identifier: GPL-3.0-or-later
// The pose tool: each person of the selected picture with its level-1 and level-2 verdicts, reasons and
// action, and the joints drawn over a preview.
#pragma once

#include "pose/PicturePoseAnalyzer.h"

#include <QImage>
#include <QString>
#include <QWidget>

#include <memory>
#include <mutex>
#include <optional>

class QLabel;
class QPlainTextEdit;
class QPushButton;

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

    // Writes a tile of each person of the picture shown, and a contact sheet, into `folder` (never over a
    // file there), off the main thread; the status line says how it went. The button asks for the folder.
    void exportTilesTo(const QString& folder);

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct Outcome;
    void analyseSelection();
    void present(const QString& path, const Outcome& outcome);
    void tilesExported(const QString& folder, int tiles, const QStringList& problems);

    ToolHost& m_host;
    QLabel* m_status;
    PoseOverlayView* m_overlay;
    QPlainTextEdit* m_details;
    QPushButton* m_exportTiles;
    std::optional<pose::PicturePoseAnalysis> m_shownAnalysis;
    // Shared with the worker; its mutex keeps one analysis at a time.
    struct Worker;
    std::shared_ptr<Worker> m_worker;
    QString m_wanted; // the picture whose result is awaited
    QString m_shown;  // the picture on display
    bool m_running = false;
};

} // namespace lumaro::app
