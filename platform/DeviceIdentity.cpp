// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DeviceIdentity.h"

#include "platform/AppPaths.h"

#include <QDir>
#include <QFile>
#include <QUuid>

#include <cerrno>
#include <cstring>

#include <unistd.h>

namespace lumaro::platform {

namespace {

QString storedIdentifier(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QUuid uuid = QUuid::fromString(QString::fromLatin1(file.read(64)).trimmed());
    return uuid.isNull() ? QString() : uuid.toString(QUuid::WithoutBraces);
}

} // namespace

QString DeviceIdentity::identifier(QString* error)
{
    const QString path = AppPaths::dataDir() + QStringLiteral("/device-id");
    if (const QString stored = storedIdentifier(path); !stored.isEmpty())
        return stored;
    QDir().mkpath(AppPaths::dataDir());
    // Written whole under a private name, then linked into place: link() never replaces, so when two
    // processes start at once, one identifier wins and both read it.
    const QString staged = path + QStringLiteral(".%1.part").arg(QUuid::createUuid().toString(QUuid::Id128));
    QFile file(staged);
    const QByteArray made = QUuid::createUuid().toString(QUuid::WithoutBraces).toLatin1() + '\n';
    const bool written = file.open(QIODevice::WriteOnly) && file.write(made) == made.size() && file.flush();
    file.close();
    if (written && ::link(QFile::encodeName(staged).constData(), QFile::encodeName(path).constData()) != 0 &&
        errno != EEXIST && error)
        *error = QString::fromLocal8Bit(strerror(errno));
    QFile::remove(staged);
    const QString stored = storedIdentifier(path);
    if (stored.isEmpty() && error && error->isEmpty())
        *error = QStringLiteral("cannot write %1").arg(path);
    return stored;
}

} // namespace lumaro::platform
