// SPDX-License-Identifier: GPL-3.0-or-later
// The memory cards the system has mounted, recognised by their camera's folder layout, each with an import button.
#pragma once

#include <QWidget>

class QListWidget;
class QPushButton;

namespace lumaro::platform {
class RemovableVolumeMonitor;
struct MountedVolume;
}

namespace lumaro::app {

class ToolHost;

// Main thread only. A newly mounted card is recognised off the main thread and offered for import (the import dialog
// opens by itself for a recognised card); cards already mounted at start are listed but not pushed on the user.
class CardMonitorPanel : public QWidget
{
    Q_OBJECT
public:
    explicit CardMonitorPanel(ToolHost& host, QWidget* parent = nullptr);

private:
    void addVolume(const platform::MountedVolume& volume, bool offer);
    void removeVolume(const QString& rootPath);
    void openImport(const QString& mountPath);

    ToolHost& m_host;
    platform::RemovableVolumeMonitor* m_monitor;
    QListWidget* m_cards;
    QPushButton* m_importButton;
};

} // namespace lumaro::app
