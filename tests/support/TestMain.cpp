// SPDX-License-Identifier: GPL-3.0-or-later
// main() of every test executable: a throwaway HOME and XDG homes per process (CTest runs each test case in
// its own process), so no test touches the user's Trash, settings or database, and none sees another's.
#include "tests/support/TestHomes.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char** argv)
{
    QTemporaryDir homes;
    if (!homes.isValid())
        return 3;
    lumaro::testing::pointHomesAt(homes.path());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // A GUI application object (offscreen) so that image and font code works; no window is ever shown.
    QGuiApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
