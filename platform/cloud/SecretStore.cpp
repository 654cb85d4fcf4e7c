// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/SecretStore.h"

#include <libsecret/secret.h>

namespace lumaro::platform {

namespace {

const SecretSchema* schema()
{
    static const SecretSchema lumaroAccount = {
        "org.lumaro.StorageAccount",
        SECRET_SCHEMA_NONE,
        {{"account", SECRET_SCHEMA_ATTRIBUTE_STRING}, {nullptr, SECRET_SCHEMA_ATTRIBUTE_STRING}}};
    return &lumaroAccount;
}

bool failed(GError* reason, QString* error)
{
    if (error)
        *error = reason ? QString::fromUtf8(reason->message) : QStringLiteral("the keyring refused");
    if (reason)
        g_error_free(reason);
    return false;
}

} // namespace

bool SecretStore::store(const QString& account, const QString& secret, QString* error)
{
    GError* reason = nullptr;
    const QByteArray name = account.toUtf8();
    const QByteArray label = QStringLiteral("Lumaro: %1").arg(account).toUtf8();
    const gboolean stored = secret_password_store_sync(schema(), SECRET_COLLECTION_DEFAULT, label.constData(),
                                                       secret.toUtf8().constData(), nullptr, &reason,
                                                       "account", name.constData(), nullptr);
    return stored ? true : failed(reason, error);
}

std::optional<QString> SecretStore::lookup(const QString& account, QString* error)
{
    GError* reason = nullptr;
    const QByteArray name = account.toUtf8();
    gchar* secret =
        secret_password_lookup_sync(schema(), nullptr, &reason, "account", name.constData(), nullptr);
    if (reason) {
        failed(reason, error);
        return std::nullopt;
    }
    if (!secret)
        return std::nullopt;
    const QString value = QString::fromUtf8(secret);
    secret_password_free(secret);
    return value;
}

bool SecretStore::clear(const QString& account, QString* error)
{
    GError* reason = nullptr;
    const QByteArray name = account.toUtf8();
    secret_password_clear_sync(schema(), nullptr, &reason, "account", name.constData(), nullptr);
    return reason ? failed(reason, error) : true;
}

} // namespace lumaro::platform
