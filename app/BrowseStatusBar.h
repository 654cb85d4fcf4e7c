// SPDX-License-Identifier: GPL-3.0-or-later
// The status bar's view of the browsing state: the selected file's name, "n / total", and a busy indicator
// while a folder loads.
#pragma once

#include <QStatusBar>

class QLabel;
class QProgressBar;

namespace lumaro::browse {
class LMRModeState;
}

namespace lumaro::app {

// Main thread.
class BrowseStatusBar : public QStatusBar
{
    Q_OBJECT
public:
    explicit BrowseStatusBar(browse::LMRModeState& state, QWidget* parent = nullptr);

    QString fileText() const;
    QString countText() const;
    bool isShowingProgress() const;

private:
    void refresh();

    browse::LMRModeState& m_state;
    QLabel* m_file;
    QLabel* m_count;
    QProgressBar* m_progress;
};

} // namespace lumaro::app
