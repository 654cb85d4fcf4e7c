// SPDX-License-Identifier: GPL-3.0-or-later
// The two JPG–RAW pairing tools as panels: the clean ("JPG-RAW配对清理") and the RAW pick.
#pragma once

#include <QWidget>

class QLabel;
class QListWidget;
class QProgressBar;
class QPushButton;

namespace lumaro::cards {
class PairingSession;
}

namespace lumaro::app {

class FolderDropZone;
class ToolHost;

// Main thread only. The panel shows a cards::PairingSession and forwards clicks to it; the work runs off the main
// thread. The clean button appears only when the safety rule offers a clean.
class PairingPanel : public QWidget
{
    Q_OBJECT
public:
    enum class Tool { clean, pick };

    PairingPanel(Tool tool, ToolHost& host, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void refresh();
    QString figures() const;

    Tool m_tool;
    ToolHost& m_host;
    cards::PairingSession* m_session;
    FolderDropZone* m_jpgZone;
    FolderDropZone* m_rawZone;
    QPushButton* m_analyzeButton;
    QLabel* m_figures;
    QLabel* m_message;
    QPushButton* m_actionButton;
    QProgressBar* m_progress;
    QListWidget* m_history;
    bool m_loaded = false;
    qsizetype m_historySeen = 0;
};

} // namespace lumaro::app
