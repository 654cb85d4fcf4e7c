// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli moves plain files to the Trash itself, without Qt, when it can do exactly what lumaro-cli-light
// would; anything else it hands over before moving or printing anything. Each case runs on a fresh folder
// and Trash through a lone copy of lumaro-cli (no helper beside it, so a hand-over shows as "cannot start"),
// then again through lumaro-cli-light: what the front end answers must print, log and leave in the Trash
// what the light program does.
#include "tests/cli/CliRunner.h"
#include "tests/support/TempFolder.h"

#include "platform/TrashDirectories.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <gtest/gtest.h>

using namespace lumaro::testing;
using lumaro::platform::TrashDirectories;

namespace {

struct TrashCase
{
    const char* name;
    QStringList arguments;     // after "trash"; "%1" stands for the pictures' folder
    bool inPicturesFolder;     // run there, so relative paths resolve against it
    QStringList trashedBefore; // items already in the Trash: "NAME" (from elsewhere) or "NAME|PATH|DATE"
    bool trashExists;
    bool answeredAlone;
};

class TrashFrontEnd : public ::testing::TestWithParam<TrashCase>
{
protected:
    TrashFrontEnd()
    {
        QDir().mkpath(bin.filePath(QStringLiteral("bin")));
        QFile::copy(QStringLiteral(LUMARO_CLI_PATH), lone);
    }

    // The case's pictures and Trash, from nothing.
    void prepare()
    {
        QDir(pictures.path()).removeRecursively();
        QDir().mkpath(pictures.path());
        QDir(trash).removeRecursively();
        for (const char* name : {"a.jpg", "b c.jpg", "sub/d.jpg", "noext", ".hidden", "IMG_1.CR2",
                                 "IMG_1.xmp", "new\nline.jpg", "été #1%.jpg", "q\"\\ uote\ttab.jpg",
                                 "ctl\x01é.jpg"})
            pictures.write(QString::fromUtf8(name), QByteArray("bytes of ") + name);
        QFile::link(pictures.filePath(QStringLiteral("a.jpg")),
                    pictures.filePath(QStringLiteral("link.jpg")));
        if (!GetParam().trashExists)
            return;
        QDir().mkpath(trash + QStringLiteral("/files"));
        QDir().mkpath(trash + QStringLiteral("/info"));
        for (const QString& item : GetParam().trashedBefore) {
            QStringList parts = item.split(QLatin1Char('|'));
            const QString name = parts.constFirst();
            if (parts.size() == 1)
                parts << QStringLiteral("/elsewhere/") + name << QStringLiteral("2026-01-02T03:04:05");
            QFile file(trash + QStringLiteral("/files/") + name);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write("trashed " + name.toUtf8());
            QFile info(trash + QStringLiteral("/info/") + name + QStringLiteral(".trashinfo"));
            ASSERT_TRUE(info.open(QIODevice::WriteOnly));
            info.write("[Trash Info]\nPath=" + QString(parts.at(1)).replace(QStringLiteral("%1"), pictures.path()).toUtf8() +
                       "\nDeletionDate=" + parts.at(2).toUtf8() + "\n");
        }
    }

    // Every entry of the pictures' folder and the Trash with its content; the deletion time as a mark.
    QStringList state() const
    {
        static const QRegularExpression date(
            QStringLiteral("DeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n"));
        QStringList found;
        for (const QString& root : {pictures.path(), trash}) {
            QDirIterator entries(root, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot | QDir::System,
                                 QDirIterator::Subdirectories);
            while (entries.hasNext()) {
                const QString path = entries.next();
                QFile file(path);
                const QString content =
                    file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QStringLiteral("-");
                found << path + QStringLiteral(": ") +
                             QString(content).replace(date, QStringLiteral("DATE\n"));
            }
        }
        found.sort();
        return found;
    }

    CliResult run(const QString& program) const
    {
        QStringList arguments{QStringLiteral("trash")};
        for (QString argument : GetParam().arguments)
            arguments << argument.replace(QStringLiteral("%1"), pictures.path());
        return runProgram(program, arguments, GetParam().inPicturesFolder ? pictures.path() : QString());
    }

    // The log's timings differ from run to run.
    static QString withoutTimings(const QString& text)
    {
        static const QRegularExpression seconds(QStringLiteral("=\\d+\\.\\d{3} s$"),
                                                QRegularExpression::MultilineOption);
        return QString(text).replace(seconds, QStringLiteral("=T s"));
    }

    TempFolder pictures;
    TempFolder bin;
    const QString lone = bin.filePath(QStringLiteral("bin/lumaro-cli"));
    const QString trash = TrashDirectories::homeTrash();
};

} // namespace

TEST_P(TrashFrontEnd, AnswersAsTheLightProgramOrHandsOverHavingDoneNothing)
{
    ASSERT_FALSE(trash.isEmpty());
    prepare();
    const QStringList before = state();
    const CliResult front = run(lone);
    const QStringList frontState = state();
    prepare();
    const CliResult light = run(QStringLiteral(LUMARO_CLI_LIGHT_PATH));
    if (!GetParam().answeredAlone) {
        expectHandedOver(front);
        EXPECT_EQ(frontState, before);
        return;
    }
    EXPECT_EQ(front.exitCode, light.exitCode) << light.errText().toStdString();
    EXPECT_EQ(front.out, light.out);
    EXPECT_EQ(withoutTimings(front.errText()), withoutTimings(light.errText()));
    EXPECT_EQ(frontState, state());
    EXPECT_NE(frontState, before) << "the case moves nothing, so it cannot tell a wrong move";
}

INSTANTIATE_TEST_SUITE_P(
    Cases, TrashFrontEnd,
    ::testing::Values(TrashCase{"twoFiles", {"%1/a.jpg", "%1/b c.jpg"}, false, {}, true, true},
                      TrashCase{"relativeQuiet", {"-q", "a.jpg", "sub/d.jpg"}, true, {}, true, true},
                      TrashCase{"quietAfterThePath", {"%1/noext", "--quiet"}, false, {}, true, true},
                      TrashCase{"namesAlreadyTaken",
                                {"%1/a.jpg", "%1/noext", "%1/.hidden"},
                                false,
                                {"a.jpg", "a.2.jpg", "noext", ".hidden"},
                                true,
                                true},
                      TrashCase{"oddNames", {"%1/new\nline.jpg", "%1/été #1%.jpg"}, false, {}, true, true},
                      TrashCase{"missingFile", {"%1/a.jpg", "%1/gone.jpg"}, false, {}, true, false},
                      TrashCase{"folder", {"%1/sub"}, false, {}, true, false},
                      TrashCase{"link", {"%1/link.jpg"}, false, {}, true, false},
                      TrashCase{"withSidecar", {"%1/IMG_1.CR2"}, false, {}, true, false},
                      TrashCase{"theSidecarItself", {"%1/IMG_1.xmp"}, false, {}, true, false},
                      TrashCase{"json", {"--json", "%1/a.jpg", "%1/b c.jpg"}, false, {"a.jpg"}, true, true},
        TrashCase{"jsonOddNames", {"-q", "%1/q\"\\ uote\ttab.jpg", "--json", "%1/ctl\x01é.jpg", "%1/new\nline.jpg"},
                  false, {}, true, true},
                      TrashCase{"restoreFromElsewhereOnly", {"--restore", "%1/gone.jpg"}, false, {"gone.jpg"}, true, false},
                      TrashCase{"restoreOne", {"--restore", "%1/gone.jpg"}, false,
                                {"gone.jpg|%1/gone.jpg|2026-01-02T03:04:05"}, true, true},
                      TrashCase{"restoreTheNewest", {"--restore", "%1/gone.jpg"}, false,
                                {"gone.jpg|%1/gone.jpg|2026-01-02T03:04:05", "gone.2.jpg|%1/gone.jpg|2026-03-04T05:06:07",
                                 "gone.3.jpg|%1/gone.jpg|2026-02-03T04:05:06"}, true, true},
                      TrashCase{"restoreNotAnotherFoldersFile", {"--restore", "%1/gone.jpg"}, false,
                                {"gone.jpg|/card/DCIM/gone.jpg|2026-05-02T03:04:05", "gone.2.jpg|%1/gone.jpg|2026-01-02T03:04:05"},
                                true, true},
                      TrashCase{"restoreTwoQuietRelative", {"-q", "--restore", "gone.jpg", "été #1 gone.jpg"}, true,
                                {"gone.jpg|%1/gone.jpg|2026-01-02T03:04:05", "été #1 gone.jpg|%1/été #1 gone.jpg|2026-01-02T03:04:05"},
                                true, true},
                      TrashCase{"restorePercentEncodedRecord", {"--restore", "%1/été #1 gone.jpg"}, false,
                                {"été #1 gone.jpg|%1/%C3%A9t%C3%A9%20%231%20gone.jpg|2026-01-02T03:04:05"}, true, true},
                      TrashCase{"restoreNamedOtherwise", {"--restore", "%1/gone.jpg"}, false,
                                {"gone (2).jpg|%1/gone.jpg|2026-01-02T03:04:05"}, true, false},
                      TrashCase{"restoreWithATrashedSidecar", {"--restore", "%1/gone.jpg"}, false,
                                {"gone.jpg|%1/gone.jpg|2026-01-02T03:04:05", "gone.jpg.xmp|%1/gone.jpg.xmp|2026-01-02T03:04:05"},
                                true, false},
                      TrashCase{"restoreOntoAFile", {"--restore", "%1/a.jpg"}, false,
                                {"a.jpg|%1/a.jpg|2026-01-02T03:04:05"}, true, false},
                      TrashCase{"restoreDatesWrittenOtherwise", {"--restore", "%1/gone.jpg"}, false,
                                {"gone.jpg|%1/gone.jpg|2026-01-02T03:04:05Z", "gone.2.jpg|%1/gone.jpg|2026-01-02T03:04:05"},
                                true, false},
                      TrashCase{"restoreJson", {"--json", "--restore", "%1/gone.jpg"}, false,
                                {"gone.jpg|%1/gone.jpg|2026-01-02T03:04:05"}, true, false},
                      TrashCase{"untidyPath", {"%1/sub/../a.jpg"}, false, {}, true, false},
                      TrashCase{"sameFileTwice", {"%1/a.jpg", "a.jpg"}, true, {}, true, false},
                      TrashCase{"noTrashYet", {"%1/a.jpg"}, false, {}, false, false},
                      TrashCase{"noFile", {"-q"}, false, {}, true, false}),
    [](const auto& info) { return std::string(info.param.name); });
