// SPDX-License-Identifier: GPL-3.0-or-later
// main() of the widget tests (window, panels): the same throwaway homes as every test process, with a widgets
// application (offscreen) instead of a GUI one.
#include "tests/support/TestHomes.h"

#include <QApplication>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    QTemporaryDir homes;
    if (!homes.isValid())
        return 3;
    lumaro::testing::pointHomesAt(homes.path());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
