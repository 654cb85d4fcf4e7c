// SPDX-License-Identifier: GPL-3.0-or-later
// Points HOME and the XDG homes of this process at folders below `root`, so no test touches the user's Trash,
// settings or database. Every test main() calls it before creating its application object.
#pragma once

#include <QString>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace lumaro::testing {

void pointHomesAt(const QString& root);

// The whole of a test main(): throwaway homes, the offscreen platform, an application object of type App
// (QGuiApplication or QApplication), then every test.
template<typename App>
int runTestsIn(int argc, char** argv)
{
    // Static, and made before anything else static: the shared settings and stores, made later, are destroyed
    // before it, so what they write as the process ends lands in the homes before these go. A local one went
    // first, and the settings written after it made its path again, left in /tmp by every test program.
    static QTemporaryDir homes;
    if (!homes.isValid())
        return 3;
    pointHomesAt(homes.path());
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    App application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}

} // namespace lumaro::testing
