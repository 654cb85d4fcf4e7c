// SPDX-License-Identifier: GPL-3.0-or-later
#include "rolls/StorageAccounts.h"

#include "platform/AppPaths.h"
#include "platform/cloud/SecretStore.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSaveFile>

namespace lumaro::rolls {

namespace {

QString storePath()
{
    return platform::AppPaths::dataDir() + QStringLiteral("/accounts.json");
}

QString keyringName(const QString& account)
{
    return QStringLiteral("rclone:") + account;
}

bool isUsableName(const QString& name)
{
    // The name becomes part of environment variable names.
    static const QRegularExpression pattern(QStringLiteral("^[A-Za-z0-9_]{1,40}$"));
    return pattern.match(name).hasMatch();
}

} // namespace

QList<StorageAccount> StorageAccounts::all()
{
    QFile file(storePath());
    QList<StorageAccount> accounts;
    if (!file.open(QIODevice::ReadOnly))
        return accounts;
    for (const QJsonValue& value : QJsonDocument::fromJson(file.readAll()).array()) {
        const QJsonObject json = value.toObject();
        StorageAccount account{
            json.value(QStringLiteral("name")).toString(), json.value(QStringLiteral("type")).toString(), {}};
        const QJsonObject options = json.value(QStringLiteral("options")).toObject();
        for (auto it = options.begin(); it != options.end(); ++it)
            account.options.insert(it.key(), it.value().toString());
        if (isUsableName(account.name) && !account.type.isEmpty())
            accounts.append(account);
    }
    return accounts;
}

QString StorageAccounts::secretKey(const QString& type, bool* obscured)
{
    const bool isKey = type == QLatin1String("s3") || type == QLatin1String("b2");
    if (obscured)
        *obscured = !isKey;
    if (type == QLatin1String("s3"))
        return QStringLiteral("secret_access_key");
    if (type == QLatin1String("b2"))
        return QStringLiteral("key");
    return QStringLiteral("pass");
}

bool StorageAccounts::add(const StorageAccount& account, const QString& secret, QString* error)
{
    if (!isUsableName(account.name)) {
        *error = QStringLiteral("%1: an account name is letters, digits and _ only").arg(account.name);
        return false;
    }
    for (auto it = account.options.cbegin(); it != account.options.cend(); ++it) {
        if (it.key() == secretKey(account.type)) {
            *error =
                QStringLiteral("%1 is a secret: it goes to the keyring, not into the settings").arg(it.key());
            return false;
        }
    }
    if (!secret.isEmpty() && !platform::SecretStore::store(keyringName(account.name), secret, error))
        return false;
    QList<StorageAccount> accounts = all();
    accounts.removeIf([&](const StorageAccount& a) { return a.name == account.name; });
    accounts.append(account);
    return write(accounts, error);
}

bool StorageAccounts::remove(const QString& name, QString* error)
{
    QList<StorageAccount> accounts = all();
    if (!accounts.removeIf([&](const StorageAccount& a) { return a.name == name; })) {
        *error = QStringLiteral("%1: no such account").arg(name);
        return false;
    }
    QString ignored;
    platform::SecretStore::clear(keyringName(name), &ignored); // an account saved without a secret has none
    return write(accounts, error);
}

QMap<QString, QString> StorageAccounts::environment(const platform::Rclone& rclone, QStringList* problems)
{
    QMap<QString, QString> variables;
    for (const StorageAccount& account : all()) {
        const QString prefix = QStringLiteral("RCLONE_CONFIG_") + account.name.toUpper() + QLatin1Char('_');
        variables.insert(prefix + QStringLiteral("TYPE"), account.type);
        for (auto it = account.options.cbegin(); it != account.options.cend(); ++it)
            variables.insert(prefix + it.key().toUpper(), it.value());
        QString error;
        const auto secret = platform::SecretStore::lookup(keyringName(account.name), &error);
        if (!secret) {
            if (!error.isEmpty() && problems)
                problems->append(account.name + QStringLiteral(": ") + error);
            continue;
        }
        bool obscure = false;
        const QString key = secretKey(account.type, &obscure);
        const auto value = obscure ? rclone.obscured(*secret) : std::optional<QString>(*secret);
        if (value)
            variables.insert(prefix + key.toUpper(), *value);
        else if (problems)
            problems->append(account.name + QStringLiteral(": rclone could not take its password"));
    }
    return variables;
}

bool StorageAccounts::write(const QList<StorageAccount>& accounts, QString* error)
{
    QJsonArray array;
    for (const StorageAccount& account : accounts) {
        QJsonObject options;
        for (auto it = account.options.cbegin(); it != account.options.cend(); ++it)
            options.insert(it.key(), it.value());
        array.append(QJsonObject{{QStringLiteral("name"), account.name},
                                 {QStringLiteral("type"), account.type},
                                 {QStringLiteral("options"), options}});
    }
    QDir().mkpath(platform::AppPaths::dataDir());
    QSaveFile file(storePath());
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(array).toJson()) < 0 || !file.commit()) {
        *error = file.errorString();
        return false;
    }
    return true;
}

} // namespace lumaro::rolls
