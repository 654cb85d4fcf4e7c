// SPDX-License-Identifier: GPL-3.0-or-later
// The vision tool: analyse the current folder (progress, cancel) and show the selected picture's mark and
// tags.
#pragma once

#include "vision/VisionRecognitionResult.h"

#include <QHash>
#include <QString>
#include <QVariantMap>
#include <QWidget>

#include <atomic>
#include <memory>

class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace lumaro::vision {
struct VisionIndexRunResult;
}

namespace lumaro::app {

class ToolHost;

// Main thread only. The analysis runs on a pool thread, one run at a time; progress and the end come back as
// queued calls, and are dropped if the panel is gone. The folder's index files are read only while the panel
// is shown, on a pool thread (a folder may hold large or hostile files), cached per folder, dropped when the
// folder changes, and read again when a run ends; each "VisionIndexDidUpdate" updates its picture at once.
class VisionPanel : public QWidget
{
    Q_OBJECT
public:
    explicit VisionPanel(ToolHost& host, QWidget* parent = nullptr);
    ~VisionPanel() override;

private:
    void start();
    void finish(const QString& folder, const vision::VisionIndexRunResult& run);
    void showSelection();
    void setBusy(bool busy);
    void loadIndex(const QString& folder);
    void forgetIndex();
    void takeUpdate(const QVariantMap& info);
    void showEvent(QShowEvent* event) override;

    ToolHost& m_host;
    QPushButton* m_analyseButton;
    QPushButton* m_cancelButton;
    QProgressBar* m_progress;
    QLabel* m_status;
    QLabel* m_mark;
    QPlainTextEdit* m_tags;
    std::shared_ptr<std::atomic<bool>> m_cancel;
    QString m_cachedFolder;  // the folder m_cache holds; empty while nothing is loaded
    QString m_loadingFolder; // the folder being read on a pool thread
    quint64 m_loadGeneration = 0;
    QHash<QString, vision::VisionRecognitionResult> m_cache; // by VisionIndexReader::lookupName()
};

} // namespace lumaro::app
