// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli finds the favourites store without Qt: for every environment it answers, its data folder must
// be the one Qt gives the window and lumaro-cli-light; the forms it does not answer are left to them.
#include "platform/files/XdgDataHome.h"

#include <QByteArray>
#include <QStandardPaths>

#include <gtest/gtest.h>

using lumaro::platform::XdgDataHome;

namespace {

struct Environment
{
    const char* name;
    const char* xdgDataHome; // null: unset
    const char* home;
    bool answered;
};

// Sets XDG_DATA_HOME and HOME for one case and puts back the test's own homes afterwards.
class EnvironmentScope
{
public:
    explicit EnvironmentScope(const Environment& environment)
        : m_xdg(qgetenv("XDG_DATA_HOME")), m_home(qgetenv("HOME"))
    {
        if (environment.xdgDataHome)
            qputenv("XDG_DATA_HOME", environment.xdgDataHome);
        else
            qunsetenv("XDG_DATA_HOME");
        qputenv("HOME", environment.home);
    }
    ~EnvironmentScope()
    {
        qputenv("XDG_DATA_HOME", m_xdg);
        qputenv("HOME", m_home);
    }

private:
    QByteArray m_xdg;
    QByteArray m_home;
};

class XdgDataHomeCases : public ::testing::TestWithParam<Environment>
{
};

} // namespace

TEST_P(XdgDataHomeCases, AnswersOnlyWhereQtWouldGiveTheSameFolder)
{
    const EnvironmentScope scope(GetParam());
    const auto plain = XdgDataHome::plainPath(GetParam().xdgDataHome, GetParam().home);
    ASSERT_EQ(plain.has_value(), GetParam().answered) << plain.value_or("(none)");
    if (plain)
        EXPECT_EQ(QString::fromStdString(*plain),
                  QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
    const auto appDir = XdgDataHome::plainAppDataDir();
    EXPECT_EQ(appDir.has_value(), plain.has_value());
    if (appDir)
        EXPECT_EQ(*appDir, *plain + "/lumaro");
}

INSTANTIATE_TEST_SUITE_P(Environments, XdgDataHomeCases,
                         ::testing::Values(Environment{"dataHomeSet", "/srv/data", "/home/ana", true},
                                           Environment{"dataHomeUnset", nullptr, "/home/ana", true},
                                           Environment{"dataHomeEmpty", "", "/home/ana", true},
                                           Environment{"nonAsciiHome", nullptr, "/home/安娜 M", true},
                                           Environment{"trailingSlash", "/srv/data/", "/home/ana", false},
                                           Environment{"doubleSlash", "/srv//data", "/home/ana", false},
                                           Environment{"dotPart", "/srv/./data", "/home/ana", false},
                                           Environment{"dotDotPart", "/srv/../data", "/home/ana", false},
                                           Environment{"relative", "data", "/home/ana", false},
                                           Environment{"root", "/", "/home/ana", false},
                                           Environment{"homeIsRoot", nullptr, "/", false},
                                           Environment{"homeNotUtf8", nullptr, "/home/caf\xe9", false}),
                         [](const auto& info) { return std::string(info.param.name); });
