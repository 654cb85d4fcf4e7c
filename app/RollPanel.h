// SPDX-License-Identifier: GPL-3.0-or-later
// The online album tool: publish the folder shown to the photographer's own storage (an rclone remote), with
// progress and cancel, and the rolls published before, each with its link and a way to take it down.
#pragma once

#include "rolls/RollPublisher.h"

#include <QWidget>

#include <atomic>
#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QSpinBox;

namespace lumaro::app {

class StorageAccountDialog;
class ToolHost;

// Main thread. Preparing and sending run on a pool thread; the window stays live and the run can be
// cancelled.
class RollPanel : public QWidget
{
    Q_OBJECT
public:
    RollPanel(ToolHost& host, platform::Rclone rclone = platform::Rclone(), QWidget* parent = nullptr);
    ~RollPanel() override;

    void publish();
    void cancel();
    // The storage accounts dialog, window-modal; deleted when closed.
    StorageAccountDialog* showAccounts();
    bool isRunning() const { return m_cancel != nullptr; }
    QComboBox& destination() { return *m_destination; }
    QLabel& status() { return *m_status; }
    QListWidget& rolls() { return *m_rolls; }

Q_SIGNALS:
    void finished();

private:
    void showProgress(const rolls::RollProgress& progress);
    void present(const rolls::PublishOutcome& outcome);
    void unpublishSelected();
    void listRolls();
    void loadRemotes();
    void addDestination(const QString& remote);

    ToolHost& m_host;
    platform::Rclone m_rclone;
    QComboBox* m_destination;
    QLineEdit* m_name;
    QSpinBox* m_budget;
    QCheckBox* m_originals;
    QCheckBox* m_keepLocation;
    QPushButton* m_publish;
    QProgressBar* m_progress;
    QLabel* m_status;
    QListWidget* m_rolls;
    QPushButton* m_unpublish;
    QPushButton* m_accounts;
    std::shared_ptr<std::atomic_bool> m_cancel;
};

} // namespace lumaro::app
