// SPDX-License-Identifier: GPL-3.0-or-later
// main() of the favourites widget tests: a widgets application (offscreen) and throwaway homes, so no test
// reaches the user's settings or database.
#include <QApplication>
#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    QTemporaryDir homes;
    if (!homes.isValid())
        return 3;
    for (const auto& [variable, sub] : {std::pair{"HOME", "home"}, std::pair{"XDG_CONFIG_HOME", "home/.config"},
                                        std::pair{"XDG_DATA_HOME", "home/.local/share"},
                                        std::pair{"XDG_CACHE_HOME", "home/.cache"}}) {
        const QString path = homes.filePath(QString::fromLatin1(sub));
        QDir().mkpath(path);
        qputenv(variable, QFile::encodeName(path));
    }
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
