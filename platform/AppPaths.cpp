// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/AppPaths.h"

#include "platform/files/XdgHomes.h"

#include <QDir>
#include <QStandardPaths>

namespace lumaro::platform {

namespace {

const QString kAppName = QString::fromUtf8(XdgHomes::appFolder);

QString underLocation(QStandardPaths::StandardLocation location)
{
    // Generic locations, so the answer does not depend on QCoreApplication's names being set.
    return QDir(QStandardPaths::writableLocation(location)).filePath(kAppName);
}

} // namespace

QString AppPaths::configDir() { return underLocation(QStandardPaths::GenericConfigLocation); }
QString AppPaths::dataDir() { return underLocation(QStandardPaths::GenericDataLocation); }
QString AppPaths::cacheDir() { return underLocation(QStandardPaths::GenericCacheLocation); }

QString AppPaths::dataHome()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

QStringList AppPaths::modelSearchDirs()
{
    QStringList dirs;
    const QString fromEnvironment = qEnvironmentVariable("LUMARO_MODELS_DIR");
    if (!fromEnvironment.isEmpty())
        dirs << fromEnvironment;
    dirs << QDir(dataDir()).filePath(QStringLiteral("models"));
#ifdef LUMARO_MODELS_INSTALL_DIR
    dirs << QStringLiteral(LUMARO_MODELS_INSTALL_DIR);
#endif
    return dirs;
}

} // namespace lumaro::platform
