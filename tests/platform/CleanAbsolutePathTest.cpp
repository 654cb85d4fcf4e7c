// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli keys a favourite by its path without Qt: every path it answers must come out as Qt cleans it
// (FavourManager::cleanedPath), and the forms it does not answer are left to the Qt programs.
#include "platform/files/CleanAbsolutePath.h"

#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <unistd.h>

using lumaro::platform::CleanAbsolutePath;

namespace {

struct PathCase
{
    const char* name;
    const char* path;
    bool answered;
};

class CleanAbsolutePaths : public ::testing::TestWithParam<PathCase>
{
};

// The test runs in a folder of its own whose name has a space and CJK characters, as a photographer's would.
class WorkingFolderScope
{
public:
    explicit WorkingFolderScope(const QString& folder)
        : m_before(QDir::currentPath())
    {
        QDir::setCurrent(folder);
    }
    ~WorkingFolderScope() { QDir::setCurrent(m_before); }

private:
    QString m_before;
};

} // namespace

TEST_P(CleanAbsolutePaths, AnswerAsQtCleansThePathOrNotAtAll)
{
    lumaro::testing::TempFolder temp;
    const WorkingFolderScope scope(temp.makeFolder(QStringLiteral("拍摄 1/day")));
    const auto cleaned = CleanAbsolutePath::of(GetParam().path);
    ASSERT_EQ(cleaned.has_value(), GetParam().answered) << cleaned.value_or("(none)");
    if (cleaned) {
        EXPECT_EQ(QString::fromStdString(*cleaned),
                  QDir::cleanPath(QFileInfo(QString::fromUtf8(GetParam().path)).absoluteFilePath()));
    }
    // A tidy path needs no cleaning: its clean form is the working folder joined to it, its last part the name.
    if (CleanAbsolutePath::isTidy(GetParam().path)) {
        const QString path = QString::fromUtf8(GetParam().path);
        ASSERT_TRUE(cleaned);
        EXPECT_EQ(QString::fromStdString(*cleaned),
                  path.startsWith(QLatin1Char('/')) ? path : QDir::currentPath() + QLatin1Char('/') + path);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Paths, CleanAbsolutePaths,
    ::testing::Values(PathCase{"plainAbsolute", "/srv/shoot/IMG_1.JPG", true},
                      PathCase{"doubledAndTrailingSlashes", "//srv//shoot/", true},
                      PathCase{"dotsInside", "/srv/./shoot/../shoot/IMG 1.JPG", true},
                      PathCase{"relativeName", "IMG_1.JPG", true},
                      PathCase{"relativeWithDots", "./sub/../IMG_1.JPG", true},
                      PathCase{"relativeClimbingOut", "../../other/照片.jpg", true},
                      PathCase{"dotOnly", ".", true},
                      PathCase{"rootOnly", "/", true},
                      PathCase{"rootDotDot", "/..", false},
                      PathCase{"climbsAboveRoot", "/srv/../../IMG_1.JPG", false},
                      PathCase{"empty", "", false},
                      PathCase{"notUtf8", "/srv/caf\xe9.jpg", false},
                      PathCase{"backslashIsAName", "/srv/a\\b.jpg", true},
                      PathCase{"dotsInNames", "/srv/...jpg/..hidden", true}),
    [](const auto& info) { return std::string(info.param.name); });
