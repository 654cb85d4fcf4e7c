// SPDX-License-Identifier: GPL-3.0-or-later
// The storage accounts set up in Lumaro (beside any the user has in rclone's own config): their settings in
// the app's data folder, their secret in the desktop keyring, and both handed to rclone through its
// environment — never written in plain text by us.
#pragma once

#include "platform/cloud/Rclone.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

namespace lumaro::rolls {

struct StorageAccount
{
    QString name;                   // the remote's name: letters, digits and "_"
    QString type;                   // rclone's backend: webdav, sftp, s3, b2, …
    QMap<QString, QString> options; // rclone's keys for the backend (url, user, host, vendor, …), no secret
};

class StorageAccounts
{
public:
    static QList<StorageAccount> all();
    // Saves the account and puts `secret` (when not empty) into the keyring; nothing is saved when either
    // fails.
    static bool add(const StorageAccount& account, const QString& secret, QString* error);
    static bool remove(const QString& name, QString* error);
    // rclone's key for the account's secret, and whether rclone wants it obscured.
    static QString secretKey(const QString& type, bool* obscured = nullptr);
    // Every account as RCLONE_CONFIG_<NAME>_<KEY> variables, secrets read from the keyring; `problems` names
    // the accounts whose secret could not be read (they are still defined, without it).
    static QMap<QString, QString> environment(const platform::Rclone& rclone,
                                              QStringList* problems = nullptr);

private:
    static bool write(const QList<StorageAccount>& accounts, QString* error);
};

} // namespace lumaro::rolls
