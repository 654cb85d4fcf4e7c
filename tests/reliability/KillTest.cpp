// SPDX-License-Identifier: GPL-3.0-or-later
// kill -9 at random moments of every command that changes files: afterwards every picture exists exactly once
// with its bytes (or turned as asked), no half-written file carries a final name, every JSON file parses,
// fav.db passes its integrity check, and running the command again completes.
#include "tests/reliability/RunLength.h"
#include "tests/reliability/Scene.h"

#include "platform/ExifOrientation.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <random>

using namespace lumaro::testing;

namespace {

struct KillCase
{
    const char* command;
    int suiteKills;
    std::function<QStringList(Scene&)> setUp; // fills the scene, returns the arguments
    const char* movedIds;                     // identities with this prefix are moved, never copied:
    QStringList areasOfOnePicture;            // each is in exactly one of these areas
    std::function<void(Scene&, const QStringList&)> afterRerun; // the state a complete run must leave
};

QString databaseCheck(const QString& path)
{
    if (!QFileInfo::exists(path))
        return QStringLiteral("ok");
    QProcess sqlite;
    sqlite.start(QStringLiteral("sqlite3"), {path, QStringLiteral("PRAGMA integrity_check;")});
    sqlite.waitForFinished(30'000);
    return QString::fromUtf8(sqlite.readAllStandardOutput()).trimmed() +
           QString::fromUtf8(sqlite.readAllStandardError());
}

int orientationOf(const QString& path)
{
    return lumaro::platform::ExifOrientation::read(path);
}

// The checks that hold after any kill: nothing damaged, JSON parses, the database is sound, and each picture
// that was only moved is in exactly one place.
void expectNothingLost(Scene& scene, const KillCase& kill, bool justKilled, int* filesChecked)
{
    const QList<Instance> instances = scene.inventory().scan();
    *filesChecked += int(instances.size());
    EXPECT_EQ(Inventory::damaged(instances), QStringList()) << kill.command;
    EXPECT_EQ(scene.inventory().brokenJson(), QStringList()) << kill.command;
    EXPECT_EQ(databaseCheck(scene.cli().favouritesDatabase()), QStringLiteral("ok")) << kill.command;
    const auto counts = Inventory::count(instances);
    for (const QString& id : scene.ids()) {
        if (!id.startsWith(QLatin1String(kill.movedIds)))
            continue;
        int places = 0;
        for (const QString& area : kill.areasOfOnePicture)
            places += counts.value(area).value(id);
        EXPECT_EQ(places, 1) << kill.command << " " << id.toStdString() << " in "
                             << describe(counts).toStdString();
    }
    // One run never copies a picture twice (a re-run may: an import goes to the next roll).
    if (!justKilled)
        return;
    for (const QString& area :
         {QStringLiteral("imports"), QStringLiteral("pick"), QStringLiteral("favourites")}) {
        for (auto it = counts.value(area).constBegin(); it != counts.value(area).constEnd(); ++it)
            EXPECT_LE(it.value(), 1) << kill.command << " " << it.key().toStdString() << " in "
                                     << area.toStdString();
    }
}

QStringList shootOf(Scene& scene, const QStringList& names)
{
    QStringList paths;
    for (const QString& name : names)
        paths.append(scene.addJpeg(scene.shoot(), name,
                                   QStringLiteral("shoot-") + QFileInfo(name).completeBaseName()));
    return paths;
}

const QStringList kShootNames{QStringLiteral("IMG_0001.JPG"), QStringLiteral("IMG_0002.JPG"),
                              QStringLiteral("IMG_0003.JPG"), QStringLiteral("DSC_0001.JPG"),
                              QStringLiteral("DSC_0002.JPG")};

std::vector<KillCase> killCases()
{
    std::vector<KillCase> cases;
    cases.push_back({"index",
                     1,
                     [](Scene& s) {
                         shootOf(s, kShootNames.mid(0, 2));
                         return QStringList{QStringLiteral("index"), QStringLiteral("-q"), s.shoot()};
                     },
                     "shoot-",
                     {QStringLiteral("shoot")},
                     [](Scene& s, const QStringList&) {
                         EXPECT_FALSE(QDir(s.shoot() + QStringLiteral("/_index"))
                                          .entryList({QStringLiteral("vision_index_*.json")})
                                          .isEmpty());
                     }});
    cases.push_back({"import",
                     3,
                     [](Scene& s) {
                         s.fillCard(3);
                         return QStringList{QStringLiteral("import"), QStringLiteral("-q"), s.card(),
                                            QStringLiteral("--to"), s.imports()};
                     },
                     "card-",
                     {QStringLiteral("card")},
                     [](Scene& s, const QStringList&) {
                         const auto counts = Inventory::count(s.inventory().scan());
                         for (const QString& id : s.ids())
                             EXPECT_GE(counts.value(QStringLiteral("imports")).value(id), 1)
                                 << id.toStdString();
                     }});
    cases.push_back(
        {"group",
         3,
         [](Scene& s) {
             shootOf(s, kShootNames);
             s.writeVisionIndex(kShootNames);
             return QStringList{QStringLiteral("group"), QStringLiteral("-q"), s.shoot()};
         },
         "shoot-",
         {QStringLiteral("shoot")},
         [](Scene& s, const QStringList&) {
             const CliRun ungroup = s.cli().run({QStringLiteral("ungroup"), QStringLiteral("-q"), s.shoot()});
             EXPECT_EQ(ungroup.exitCode, 0) << ungroup.errText().toStdString();
             QStringList names = kShootNames;
             names.sort();
             EXPECT_EQ(QDir(s.shoot()).entryList(QDir::Files, QDir::Name), names);
         }});
    cases.push_back(
        {"fav add",
         3,
         [](Scene& s) {
             s.enableFavouriteCopies();
             return QStringList{QStringLiteral("fav"), QStringLiteral("add"), QStringLiteral("-q")} +
                    shootOf(s, kShootNames.mid(0, 3));
         },
         "shoot-",
         {QStringLiteral("shoot")},
         [](Scene& s, const QStringList&) {
             const CliRun list =
                 s.cli().run({QStringLiteral("fav"), QStringLiteral("list"), QStringLiteral("-q")});
             EXPECT_EQ(QString::fromUtf8(list.out).split(QLatin1Char('\n'), Qt::SkipEmptyParts).size(), 3);
             // Every favourite has its copy, also the one whose mark was stopped before the copy.
             const auto copies = Inventory::count(s.inventory().scan()).value(QStringLiteral("favourites"));
             for (const QString& name : kShootNames.mid(0, 3))
                 EXPECT_EQ(copies.value(QStringLiteral("shoot-") + QFileInfo(name).completeBaseName()), 1)
                     << name.toStdString();
         }});
    cases.push_back(
        {"trash",
         3,
         [](Scene& s) {
             return QStringList{QStringLiteral("trash"), QStringLiteral("-q")} +
                    shootOf(s, kShootNames.mid(0, 4));
         },
         "shoot-",
         {QStringLiteral("shoot"), QStringLiteral("trash")},
         [](Scene& s, const QStringList& arguments) {
             const CliRun restore = s.cli().run(
                 QStringList{QStringLiteral("trash"), QStringLiteral("--restore"), QStringLiteral("-q")} +
                 arguments.mid(2));
             EXPECT_EQ(restore.exitCode, 0) << restore.errText().toStdString();
             const auto counts = Inventory::count(s.inventory().scan());
             EXPECT_EQ(counts.value(QStringLiteral("shoot")).size(), 4) << describe(counts).toStdString();
         }});
    cases.push_back({"rotate",
                     3,
                     [](Scene& s) {
                         return QStringList{QStringLiteral("rotate"), QStringLiteral("-q")} +
                                shootOf(s, kShootNames.mid(0, 3));
                     },
                     "shoot-",
                     {QStringLiteral("shoot")},
                     [](Scene& s, const QStringList&) {
                         // Killed and run again: each picture turned once or twice to the left, never lost or
                         // mangled.
                         for (const QString& path : s.shootPictures())
                             EXPECT_TRUE(orientationOf(path) == 8 || orientationOf(path) == 3)
                                 << path.toStdString();
                     }});
    cases.push_back({"pick",
                     3,
                     [](Scene& s) {
                         shootOf(s, kShootNames.mid(0, 3));
                         for (const QString& name : kShootNames.mid(0, 3))
                             s.addRaw(s.raw(), QFileInfo(name).completeBaseName() + QStringLiteral(".CR2"),
                                      QStringLiteral("raw-") + QFileInfo(name).completeBaseName());
                         s.addRaw(s.raw(), QStringLiteral("IMG_0099.CR2"), QStringLiteral("raw-lonely"));
                         return QStringList{QStringLiteral("pick"),  QStringLiteral("-q"),
                                            QStringLiteral("--jpg"), s.shoot(),
                                            QStringLiteral("--raw"), s.raw()};
                     },
                     "raw-",
                     {QStringLiteral("raw")},
                     [](Scene& s, const QStringList&) {
                         const auto picked =
                             Inventory::count(s.inventory().scan()).value(QStringLiteral("pick"));
                         EXPECT_EQ(picked.size(), 3);
                         EXPECT_FALSE(picked.contains(QStringLiteral("raw-lonely")));
                     }});
    // Published to a plain folder (a remote of rclone's local backend, in the sandbox's own rclone config):
    // the shoot is only read, the roll's record is written whole or not at all, and a re-run sends what the
    // killed one did not.
    cases.push_back(
        {"roll publish",
         2,
         [](Scene& s) {
             shootOf(s, kShootNames.mid(0, 3));
             QDir().mkpath(s.cli().root() + QStringLiteral("/config/rclone"));
             QFile config(s.cli().root() + QStringLiteral("/config/rclone/rclone.conf"));
             EXPECT_TRUE(config.open(QIODevice::WriteOnly) && config.write("[disk]\ntype = local\n") > 0);
             return QStringList{
                 QStringLiteral("roll"), QStringLiteral("publish"),
                 QStringLiteral("-q"),   s.shoot(),
                 QStringLiteral("--to"), QStringLiteral("disk:") + s.root() + QStringLiteral("/remote")};
         },
         "shoot-",
         {QStringLiteral("shoot")},
         [](Scene& s, const QStringList&) {
             const CliRun list =
                 s.cli().run({QStringLiteral("roll"), QStringLiteral("list"), QStringLiteral("-q")});
             EXPECT_EQ(QString::fromUtf8(list.out).count(QLatin1Char('\n')), 1) << list.out.toStdString();
             // The album's previews, one per picture.
             const QStringList sent = QDir(s.root() + QStringLiteral("/remote/shoot/p"))
                                          .entryList({QStringLiteral("*.jpg")}, QDir::Files);
             EXPECT_EQ(sent.size(), 3) << sent.join(QLatin1Char(' ')).toStdString();
         }});
    return cases;
}

// The calls a complete run makes once it has started on the scene's files (start-up is not interesting).
QList<TracedCall> workCalls(const QList<TracedCall>& calls, const QString& root)
{
    qsizetype first = 0;
    while (first < calls.size() && !calls.at(first).line.contains(root))
        ++first;
    return calls.mid(first);
}

class KillTest : public ::testing::TestWithParam<size_t>
{
};

TEST_P(KillTest, KilledAtRandomMomentsLosesNothingAndARerunCompletes)
{
    if (!CliSandbox::canTrace())
        GTEST_SKIP() << "strace cannot trace here (missing, or ptrace not permitted)";
    const KillCase kill = killCases().at(GetParam());
    const int wanted = runLength("LUMARO_KILLS", kill.suiteKills);
    std::mt19937 random(reliabilitySeed() + quint32(GetParam()));

    QList<TracedCall> calls;
    {
        Scene probe;
        const QStringList arguments = kill.setUp(probe);
        calls = workCalls(probe.cli().trace(arguments), probe.root());
    }
    ASSERT_FALSE(calls.isEmpty()) << kill.command << " made no file-changing call";

    int kills = 0, filesChecked = 0, attempts = 0;
    while (kills < wanted && attempts < wanted * 4) {
        ++attempts;
        const qsizetype pick = std::uniform_int_distribution<qsizetype>(0, calls.size() - 1)(random);
        int nth = 0;
        for (qsizetype i = 0; i <= pick; ++i)
            nth += calls.at(i).thread == calls.at(pick).thread && calls.at(i).name == calls.at(pick).name;
        Scene scene;
        const QStringList arguments = kill.setUp(scene);
        const CliRun killed = scene.cli().run(arguments, killAt(calls.at(pick).name, nth));
        kills += killed.killed;
        SCOPED_TRACE(QStringLiteral("%1 killed at %2 #%3 (seed %4)")
                         .arg(QLatin1String(kill.command), calls.at(pick).name)
                         .arg(nth)
                         .arg(reliabilitySeed())
                         .toStdString());
        expectNothingLost(scene, kill, true, &filesChecked);

        QStringList rerun = arguments;
        if (QLatin1String(kill.command) == QLatin1String("trash"))
            rerun = arguments.mid(0, 2) + scene.shootPictures();
        const CliRun again = scene.cli().run(rerun);
        EXPECT_EQ(again.exitCode, 0) << again.errText().toStdString();
        expectNothingLost(scene, kill, false, &filesChecked);
        kill.afterRerun(scene, arguments);
        if (HasFailure())
            break;
    }
    std::printf("reliability: %s: %d kills in %d runs, %d files checked\n", kill.command, kills, attempts,
                filesChecked);
    EXPECT_GT(kills, 0);
}

std::string caseName(const ::testing::TestParamInfo<size_t>& info)
{
    std::string name = killCases().at(info.param).command;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Commands, KillTest, ::testing::Range<size_t>(0, 8), caseName);

} // namespace
