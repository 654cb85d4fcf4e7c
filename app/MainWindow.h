// SPDX-License-Identifier: GPL-3.0-or-later
// The application window: owns the one LMRModeState and shows the current folder's pictures.
#pragma once

#include "app/ToolHost.h"

#include <QMainWindow>

class QLabel;
class QListWidget;
class QMenu;

namespace lumaro::browse {
class FolderLoader;
class LMRModeState;
} // namespace lumaro::browse

namespace lumaro::app {

class MainWindow : public QMainWindow, public ToolHost
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    void openFolder(const QString& folder);
    browse::LMRModeState& state() { return *m_state; }

    // ToolHost
    browse::LMRModeState& modeState() override { return *m_state; }
    void addToolPanel(const QString& title, QWidget* panel) override;
    void reloadCurrentFolder() override;
    QWidget* dialogParent() override { return this; }

private:
    void chooseFolder();
    void showList();
    void showSelection();

    browse::LMRModeState* m_state;
    browse::FolderLoader* m_loader;
    QListWidget* m_list;
    QLabel* m_status;
    QMenu* m_toolsMenu;
};

} // namespace lumaro::app
