// SPDX-License-Identifier: GPL-3.0-or-later
// The storage accounts rolls can be published to: add one (its password or key goes to the desktop keyring,
// its other settings to Lumaro's data folder), remove one, and check that its store answers. Accounts the
// photographer already has in rclone's own config are used as they are and not listed here.
#pragma once

#include "platform/cloud/Rclone.h"

#include <QDialog>
#include <QMap>

#include <functional>

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace lumaro::app {

// Main thread. Keyring and network calls run on the pool; the buttons wait while one runs.
class StorageAccountDialog : public QDialog
{
    Q_OBJECT
public:
    explicit StorageAccountDialog(platform::Rclone rclone, QWidget* parent = nullptr);

    void addAccount();
    // Asks first (a window-modal box, child of this dialog).
    void removeSelected();
    void checkSelected();
    bool isBusy() const { return m_busy; }

    QListWidget& accounts() { return *m_accounts; }
    QLineEdit& name() { return *m_name; }
    QComboBox& type() { return *m_type; }
    // The field of the chosen type for rclone's `key` (url, host, user, …); null when the type has none.
    QLineEdit* field(const QString& key) const { return m_fields.value(key); }
    QLineEdit& secret() { return *m_secret; }
    QLabel& status() { return *m_status; }

Q_SIGNALS:
    void accountsChanged();
    void idle();

private:
    // What a keyring or network call came to.
    struct Done
    {
        bool ok = false;
        QString message;
    };

    void showFieldsOfType();
    void listAccounts();
    void remove(const QString& name);
    // Runs `work` on the pool with the buttons waiting; then the list is read again, `outcome` says the
    // result, and a success is announced.
    void changeInBackground(const QString& saying, std::function<Done()> work,
                            std::function<QString(const Done&)> outcome);
    void setBusy(bool busy, const QString& saying = {});
    QString selectedName() const;

    platform::Rclone m_rclone;
    QListWidget* m_accounts;
    QLineEdit* m_name;
    QComboBox* m_type;
    QFormLayout* m_form;
    QMap<QString, QLineEdit*> m_fields;
    QLabel* m_secretLabel;
    QLineEdit* m_secret;
    QPushButton* m_add;
    QPushButton* m_remove;
    QPushButton* m_check;
    QLabel* m_status;
    bool m_busy = false;
};

} // namespace lumaro::app
