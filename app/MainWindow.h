// SPDX-License-Identifier: GPL-3.0-or-later
// The application window: owns the one LMRModeState and shows the current folder's pictures.
#pragma once

#include <QMainWindow>

class QLabel;
class QListWidget;

namespace lumaro::browse {
class FolderLoader;
class LMRModeState;
} // namespace lumaro::browse

namespace lumaro::app {

class MainWindow : public QMainWindow
{
    Q_OBJECT
public:
    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    void openFolder(const QString& folder);
    browse::LMRModeState& state() { return *m_state; }

private:
    void chooseFolder();
    void showList();
    void showSelection();

    browse::LMRModeState* m_state;
    browse::FolderLoader* m_loader;
    QListWidget* m_list;
    QLabel* m_status;
};

} // namespace lumaro::app
