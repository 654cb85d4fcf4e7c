// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/layering/IncludeRules.h"

#include <QDirIterator>
#include <QFile>

#include <gtest/gtest.h>

using namespace lumaro::testing;

TEST(Layering, EveryModuleIncludesOnlyWhatItsLayerAllows)
{
    const QString root = QStringLiteral(LUMARO_SOURCE_DIR);
    int checked = 0;
    QStringList report;
    for (const char* module : {"platform", "browse", "vision", "pose", "cards", "library", "report", "rolls", "cli", "app"}) {
        QDirIterator it(root + QLatin1Char('/') + QLatin1String(module), {QStringLiteral("*.h"), QStringLiteral("*.cpp")},
                        QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
            const QString relative = path.mid(root.size() + 1);
            for (const auto& v : checkIncludes(relative, QString::fromUtf8(file.readAll())))
                report << QStringLiteral("%1:%2: #include %3 — %4").arg(v.file).arg(v.line).arg(v.include, v.reason);
            ++checked;
        }
    }
    EXPECT_GT(checked, 20) << "the source tree was not found under " << root.toStdString();
    EXPECT_TRUE(report.isEmpty()) << report.join(QLatin1Char('\n')).toStdString();
}

struct RuleCase
{
    const char* path;
    const char* line;
    bool allowed;
};

class IncludeRule : public ::testing::TestWithParam<RuleCase>
{
};

TEST_P(IncludeRule, IsJudgedByTheTable)
{
    const auto& c = GetParam();
    const auto violations = checkIncludes(QString::fromUtf8(c.path), QString::fromUtf8(c.line));
    EXPECT_EQ(violations.isEmpty(), c.allowed) << c.path << ": " << c.line;
}

INSTANTIATE_TEST_SUITE_P(
    Table, IncludeRule,
    ::testing::Values(RuleCase{"browse/state/A.cpp", "#include \"platform/Log.h\"", true},
                      RuleCase{"platform/Log.cpp", "#include \"browse/state/LMRModeState.h\"", false},
                      RuleCase{"vision/A.cpp", "#include \"browse/state/LMRModeState.h\"", false},
                      RuleCase{"pose/A.cpp", "#include \"vision/VisionTag.h\"", true},
                      RuleCase{"cards/A.cpp", "#include \"library/FavourManager.h\"", false},
                      RuleCase{"cli/A.cpp", "#include \"app/MainWindow.h\"", false},
                      RuleCase{"app/A.cpp", "#include \"cards/X.h\"", true},
                      RuleCase{"browse/A.cpp", "#include \"Local.h\"", false},
                      RuleCase{"platform/A.cpp", "#include \"moc_A.cpp\"", true},
                      RuleCase{"platform/A.cpp", "#include \"moc_B.cpp\"", false},
                      RuleCase{"browse/A.cpp", "#include \"platform/fakes/MemorySettingsStore.h\"", false},
                      RuleCase{"browse/A.cpp", "#include <sys/xattr.h>", false},
                      RuleCase{"platform/A.cpp", "#include <sys/xattr.h>", true},
                      RuleCase{"cli/A.cpp", "#include <unistd.h>", false},
                      RuleCase{"cli/A.cpp", "#include <QWidget>", false},
                      RuleCase{"vision/A.cpp", "  #  include <QtWidgets/QLabel>", false},
                      RuleCase{"app/A.cpp", "#include <QMainWindow>", true},
                      RuleCase{"browse/A.cpp", "#include <QImage>", true},
                      RuleCase{"report/A.cpp", "#include <QChartView>", false},
                      RuleCase{"report/A.cpp", "#include \"browse/state/LMRModeState.h\"", false},
                      RuleCase{"cli/A.cpp", "#include \"report/ShootingReport.h\"", true},
                      RuleCase{"tests/x/A.cpp", "#include <unistd.h>", true}));
