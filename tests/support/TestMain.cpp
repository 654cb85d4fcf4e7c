// SPDX-License-Identifier: GPL-3.0-or-later
// main() of every test executable: a throwaway HOME and XDG homes per process (CTest runs each test case in
// its own process), so no test touches the user's Trash, settings or database, and none sees another's.
#include "tests/support/TestHomes.h"

#include <QGuiApplication>

// A GUI application object (offscreen) so that image and font code works; no window is ever shown.
int main(int argc, char** argv)
{
    return lumaro::testing::runTestsIn<QGuiApplication>(argc, argv);
}
