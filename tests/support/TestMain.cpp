// SPDX-License-Identifier: GPL-3.0-or-later
// main() of every test executable: a throwaway HOME and XDG homes per process (CTest runs each test case in
// its own process), so no test touches the user's Trash, settings or database, and none sees another's.
#include <QGuiApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

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

} // namespace

int main(int argc, char** argv)
{
    QTemporaryDir homes;
    if (!homes.isValid())
        return 3;
    pointHomesAt(homes.path());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // A GUI application object (offscreen) so that image and font code works; no window is ever shown.
    QGuiApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
