// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/TestHomes.h"

#include <QDir>
#include <QFile>

namespace lumaro::testing {

void pointHomesAt(const QString& root)
{
    const auto set = [&root](const char* variable, const QString& sub) {
        const QString path = root + QLatin1Char('/') + sub;
        QDir().mkpath(path);
        qputenv(variable, QFile::encodeName(path));
    };
    set("HOME", QStringLiteral("home"));
    set("XDG_CONFIG_HOME", QStringLiteral("home/.config"));
    set("XDG_DATA_HOME", QStringLiteral("home/.local/share"));
    set("XDG_CACHE_HOME", QStringLiteral("home/.cache"));
    set("XDG_STATE_HOME", QStringLiteral("home/.local/state"));
    set("XDG_RUNTIME_DIR", QStringLiteral("runtime"));
    QFile::setPermissions(root + QStringLiteral("/runtime"), QFileDevice::ReadOwner | QFileDevice::WriteOwner
                                                               | QFileDevice::ExeOwner);
}

} // namespace lumaro::testing
