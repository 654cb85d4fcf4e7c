// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli finds the favourites store and the settings without Qt: for every environment it answers, its
// folders must be the ones Qt gives the window and lumaro-cli-light; the forms it does not answer are left
// to them.
#include "platform/files/XdgHomes.h"

#include <QByteArray>
#include <QStandardPaths>

#include <gtest/gtest.h>

using lumaro::platform::XdgHomes;

namespace {

struct Environment
{
    const char* name;
    const char* xdgValue; // XDG_DATA_HOME or XDG_CONFIG_HOME; null: unset
    const char* home;
    bool answered;
};

struct Home
{
    XdgHomes::Home home;
    const char* variable;
    QStandardPaths::StandardLocation location;
};

const Home kHomes[] = {{XdgHomes::Home::data, "XDG_DATA_HOME", QStandardPaths::GenericDataLocation},
                       {XdgHomes::Home::config, "XDG_CONFIG_HOME", QStandardPaths::GenericConfigLocation}};

// Sets the home's variable and HOME for one case and puts back the test's own homes afterwards.
class EnvironmentScope
{
public:
    EnvironmentScope(const char* variable, const Environment& environment)
        : m_variable(variable), m_xdg(qgetenv(variable)), m_home(qgetenv("HOME"))
    {
        if (environment.xdgValue)
            qputenv(variable, environment.xdgValue);
        else
            qunsetenv(variable);
        qputenv("HOME", environment.home);
    }
    ~EnvironmentScope()
    {
        qputenv(m_variable, m_xdg);
        qputenv("HOME", m_home);
    }

private:
    const char* m_variable;
    QByteArray m_xdg;
    QByteArray m_home;
};

class XdgHomesCases : public ::testing::TestWithParam<Environment>
{
};

} // namespace

TEST_P(XdgHomesCases, AnswersOnlyWhereQtWouldGiveTheSameFolder)
{
    for (const Home& home : kHomes) {
        SCOPED_TRACE(home.variable);
        const EnvironmentScope scope(home.variable, GetParam());
        const auto plain = XdgHomes::plainPath(home.home, GetParam().xdgValue, GetParam().home);
        ASSERT_EQ(plain.has_value(), GetParam().answered) << plain.value_or("(none)");
        if (plain) {
            EXPECT_EQ(QString::fromStdString(*plain), QStandardPaths::writableLocation(home.location));
        }
        const auto appDir = XdgHomes::plainAppDir(home.home);
        EXPECT_EQ(appDir.has_value(), plain.has_value());
        if (appDir) {
            EXPECT_EQ(*appDir, *plain + "/lumaro");
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Environments, XdgHomesCases,
                         ::testing::Values(Environment{"homeSet", "/srv/data", "/home/ana", true},
                                           Environment{"homeUnset", nullptr, "/home/ana", true},
                                           Environment{"homeEmpty", "", "/home/ana", true},
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
