// SPDX-License-Identifier: GPL-3.0-or-later
// main() of the cards panel tests: throwaway homes (the Trash and settings of this process only) and a widgets
// application, offscreen.
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
