// SPDX-License-Identifier: GPL-3.0-or-later
// main() of the widget tests (window, panels): the same throwaway homes as every test process, with a widgets
// application (offscreen) instead of a GUI one.
#include "tests/support/TestHomes.h"

#include <QApplication>

int main(int argc, char** argv)
{
    return lumaro::testing::runTestsIn<QApplication>(argc, argv);
}
