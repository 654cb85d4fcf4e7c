// SPDX-License-Identifier: GPL-3.0-or-later
// Commands meeting a hostile disk: a destination that fills up, read-only volumes, renames across file
// systems, a file that vanishes mid-batch, reads that fail. Each gives a clear message and an exit code, and
// loses nothing.
#include "tests/reliability/Scene.h"
#include "tests/reliability/Volume.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

using namespace lumaro::testing;

namespace {

constexpr qint64 kSmallVolume = 96 * 1024;

#define REQUIRE_MOUNTS()                                                                                     \
    do {                                                                                                     \
        QString reason;                                                                                      \
        if (!Volume::canMount(&reason))                                                                      \
            GTEST_SKIP() << "cannot mount a test volume here: " << reason.toStdString();                     \
    } while (false)

#define REQUIRE_STRACE()                                                                                     \
    do {                                                                                                     \
        if (!CliSandbox::canTrace())                                                                         \
            GTEST_SKIP() << "strace cannot trace here (missing, or ptrace not permitted)";                   \
    } while (false)

// Every identity that started in `areas` is still there exactly once, intact; nothing anywhere is damaged.
void expectEachOnceIn(Scene& scene, const QString& idPrefix, const QStringList& areas,
                      const std::string& context)
{
    const QList<Instance> instances = scene.inventory().scan();
    EXPECT_EQ(Inventory::damaged(instances), QStringList()) << context;
    EXPECT_EQ(scene.inventory().brokenJson(), QStringList()) << context;
    const auto counts = Inventory::count(instances);
    for (const QString& id : scene.ids()) {
        if (!id.startsWith(idPrefix))
            continue;
        int places = 0;
        for (const QString& area : areas)
            places += counts.value(area).value(id);
        EXPECT_EQ(places, 1) << context << ": " << id.toStdString() << " in "
                             << describe(counts).toStdString();
    }
}

// A failure the user can act on: a non-zero exit and a message naming the problem on standard error.
void expectClearFailure(const CliRun& run, const std::string& context)
{
    EXPECT_FALSE(run.killed) << context << " crashed: " << run.errText().toStdString();
    EXPECT_TRUE(run.exitCode == 1 || run.exitCode == 2) << context << " exit " << run.exitCode;
    EXPECT_FALSE(run.errText().trimmed().isEmpty()) << context << " said nothing";
}

QStringList shootPictures(Scene& scene, int count)
{
    QStringList paths;
    for (int i = 1; i <= count; ++i)
        paths.append(scene.addJpeg(scene.shoot(),
                                   QStringLiteral("IMG_%1.JPG").arg(i, 4, 10, QLatin1Char('0')),
                                   QStringLiteral("shoot-%1").arg(i)));
    return paths;
}

void rawsFor(Scene& scene, int count, int size = 0)
{
    for (int i = 1; i <= count; ++i)
        scene.addRaw(scene.raw(), QStringLiteral("IMG_%1.CR2").arg(i, 4, 10, QLatin1Char('0')),
                     QStringLiteral("raw-%1").arg(i), size);
}

TEST(Faults, ADestinationThatFillsUpFailsCleanlyAndKeepsTheSources)
{
    REQUIRE_MOUNTS();
    QTemporaryDir mounts;
    {
        Volume small(mounts.filePath(QStringLiteral("imports")), kSmallVolume);
        ASSERT_TRUE(small.isMounted());
        Scene scene({{}, {}, {}, small.path()});
        scene.fillCard(3, 40 * 1024);
        const CliRun run = scene.cli().run(
            {QStringLiteral("import"), scene.card(), QStringLiteral("--to"), scene.imports()});
        expectClearFailure(run, "import onto a full volume");
        expectEachOnceIn(scene, QStringLiteral("card"), {QStringLiteral("card")},
                         "import onto a full volume");
    }
    {
        Volume small(mounts.filePath(QStringLiteral("raws")), kSmallVolume);
        ASSERT_TRUE(small.isMounted());
        Scene scene({{}, {}, small.path() + QStringLiteral("/raw"), {}});
        shootPictures(scene, 4);
        rawsFor(scene, 4, 20 * 1024);
        const CliRun run = scene.cli().run({QStringLiteral("pick"), QStringLiteral("--jpg"), scene.shoot(),
                                            QStringLiteral("--raw"), scene.raw()});
        expectClearFailure(run, "RAW pick onto a full volume");
        expectEachOnceIn(scene, QStringLiteral("raw"), {QStringLiteral("raw")},
                         "RAW pick onto a full volume");
    }
}

TEST(Faults, ReadOnlyVolumesRefuseEveryChangeAndKeepEveryPicture)
{
    REQUIRE_MOUNTS();
    struct Case
    {
        const char* name;
        std::function<QStringList(Scene&, const QStringList& pictures)> arguments;
    };
    const std::vector<Case> cases{
        {"trash", [](Scene&, const QStringList& p) { return QStringList{QStringLiteral("trash")} + p; }},
        {"rotate", [](Scene&, const QStringList& p) { return QStringList{QStringLiteral("rotate")} + p; }},
        {"group",
         [](Scene& s, const QStringList&) {
             return QStringList{QStringLiteral("group"), s.shoot()};
         }},
        {"tags",
         [](Scene&, const QStringList& p) {
             return QStringList{QStringLiteral("tags"), p.first(), QStringLiteral("--toggle"),
                                QStringLiteral("red")};
         }},
        {"import",
         [](Scene& s, const QStringList&) {
             return QStringList{QStringLiteral("import"), s.card(), QStringLiteral("--to"), s.shoot()};
         }},
    };
    QTemporaryDir mounts;
    for (const Case& c : cases) {
        Volume volume(mounts.filePath(QString::fromLatin1(c.name)), 1 << 20);
        ASSERT_TRUE(volume.isMounted());
        Scene scene({{}, volume.path() + QStringLiteral("/shoot"), {}, {}});
        const QStringList pictures = shootPictures(scene, 3);
        scene.writeVisionIndex(
            {QStringLiteral("IMG_0001.JPG"), QStringLiteral("IMG_0002.JPG"), QStringLiteral("IMG_0003.JPG")});
        scene.fillCard(1);
        ASSERT_TRUE(volume.makeReadOnly());
        const CliRun run = scene.cli().run(c.arguments(scene, pictures));
        expectClearFailure(run, c.name);
        expectEachOnceIn(scene, QStringLiteral("shoot"), {QStringLiteral("shoot")}, c.name);
        EXPECT_EQ(QDir(scene.shoot()).entryList(QDir::Files, QDir::Name),
                  (QStringList{QStringLiteral("IMG_0001.JPG"), QStringLiteral("IMG_0002.JPG"),
                               QStringLiteral("IMG_0003.JPG")}))
            << c.name;
    }
}

TEST(Faults, RenamesFailingAcrossFileSystemsFallBackOrFailWithoutLoss)
{
    REQUIRE_STRACE();
    const QStringList exdev{QStringLiteral("-e"), QStringLiteral("trace=rename,renameat,renameat2"),
                            QStringLiteral("-e"),
                            QStringLiteral("inject=rename,renameat,renameat2:error=EXDEV")};
    {
        Scene scene;
        const QStringList pictures = shootPictures(scene, 3);
        const CliRun trash = scene.cli().run(QStringList{QStringLiteral("trash")} + pictures, exdev);
        EXPECT_FALSE(trash.killed);
        expectEachOnceIn(scene, QStringLiteral("shoot"), {QStringLiteral("shoot"), QStringLiteral("trash")},
                         "trash");
        const CliRun restore = scene.cli().run(
            QStringList{QStringLiteral("trash"), QStringLiteral("--restore")} + pictures, exdev);
        EXPECT_FALSE(restore.killed);
        expectEachOnceIn(scene, QStringLiteral("shoot"), {QStringLiteral("shoot"), QStringLiteral("trash")},
                         "restore");
    }
    for (const char* command : {"group", "rotate"}) {
        Scene scene;
        const QStringList pictures = shootPictures(scene, 3);
        scene.writeVisionIndex(QDir(scene.shoot()).entryList(QDir::Files));
        const QStringList arguments = QLatin1String(command) == QLatin1String("group")
                                          ? QStringList{QStringLiteral("group"), scene.shoot()}
                                          : QStringList{QStringLiteral("rotate")} + pictures;
        const CliRun run = scene.cli().run(arguments, exdev);
        expectClearFailure(run, command);
        expectEachOnceIn(scene, QStringLiteral("shoot"), {QStringLiteral("shoot")}, command);
    }
    {
        Scene scene;
        scene.fillCard(2);
        const CliRun run = scene.cli().run(
            {QStringLiteral("import"), scene.card(), QStringLiteral("--to"), scene.imports()}, exdev);
        EXPECT_FALSE(run.killed);
        expectEachOnceIn(scene, QStringLiteral("card"), {QStringLiteral("card")}, "import");
    }
}

TEST(Faults, ACardWithoutATrashOfItsOwnTrashesToHomeAndRestoresAcrossVolumes)
{
    REQUIRE_MOUNTS();
    QTemporaryDir mounts;
    Volume card(mounts.filePath(QStringLiteral("card")), 1 << 20);
    ASSERT_TRUE(card.isMounted());
    Scene scene({card.path(), {}, {}, {}});
    scene.fillCard(2);
    // A plain file where the card's own trash folder would go: the Trash must fall back to the home trash.
    QFile blocker(card.path() + QStringLiteral("/.Trash-0"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    const QString picture = card.path() + QStringLiteral("/DCIM/100CANON/IMG_0001.JPG");

    const CliRun trash = scene.cli().run({QStringLiteral("trash"), picture});
    EXPECT_FALSE(trash.killed);
    expectEachOnceIn(scene, QStringLiteral("card"), {QStringLiteral("card"), QStringLiteral("trash")},
                     "trash from card");
    if (trash.exitCode != 0)
        expectClearFailure(trash, "trash from card");

    const CliRun restore = scene.cli().run({QStringLiteral("trash"), QStringLiteral("--restore"), picture});
    EXPECT_FALSE(restore.killed);
    expectEachOnceIn(scene, QStringLiteral("card"), {QStringLiteral("card"), QStringLiteral("trash")},
                     "restore to card");
    EXPECT_TRUE(QFileInfo::exists(picture));
}

TEST(Faults, AFileVanishingMidBatchFailsThatFileOnly)
{
    REQUIRE_STRACE();
    struct Case
    {
        const char* name;
        std::function<QStringList(Scene&)> arguments; // fills the scene
        std::function<QString(Scene&)> victim;
    };
    const std::vector<Case> cases{
        {"trash", [](Scene& s) { return QStringList{QStringLiteral("trash")} + shootPictures(s, 3); },
         [](Scene& s) -> QString { return s.shoot() + QStringLiteral("/IMG_0002.JPG"); }},
        {"rotate", [](Scene& s) { return QStringList{QStringLiteral("rotate")} + shootPictures(s, 3); },
         [](Scene& s) -> QString { return s.shoot() + QStringLiteral("/IMG_0002.JPG"); }},
        {"import",
         [](Scene& s) {
             s.fillCard(3);
             return QStringList{QStringLiteral("import"), s.card(), QStringLiteral("--to"), s.imports()};
         },
         [](Scene& s) -> QString { return s.card() + QStringLiteral("/DCIM/100CANON/IMG_0002.CR2"); }},
        {"pick",
         [](Scene& s) {
             shootPictures(s, 4);
             rawsFor(s, 4);
             return QStringList{QStringLiteral("pick"), QStringLiteral("--jpg"), s.shoot(),
                                QStringLiteral("--raw"), s.raw()};
         },
         [](Scene& s) -> QString { return s.raw() + QStringLiteral("/IMG_0002.CR2"); }},
    };
    for (const Case& c : cases) {
        Scene scene;
        const QStringList arguments = c.arguments(scene);
        const QString victim = c.victim(scene);
        // Seen once, then gone: from its second look on, every call naming the file fails as it would once
        // the file is deleted.
        const CliRun run = scene.cli().run(arguments, {QStringLiteral("-P"), victim, QStringLiteral("-e"),
                                                       QStringLiteral("inject=all:error=ENOENT:when=2+")});
        expectClearFailure(run, c.name);
        EXPECT_EQ(run.exitCode, 1) << c.name << ": the other files went through";
        EXPECT_TRUE(run.errText().contains(QFileInfo(victim).fileName()))
            << c.name << ": " << run.errText().toStdString();
        EXPECT_TRUE(QFileInfo::exists(victim)) << c.name;
        const auto counts = Inventory::count(scene.inventory().scan());
        EXPECT_EQ(Inventory::damaged(scene.inventory().scan()), QStringList()) << c.name;
        EXPECT_GT(counts.value(QStringLiteral("trash")).size() +
                      counts.value(QStringLiteral("imports")).size() +
                      counts.value(QStringLiteral("pick")).size() +
                      (QLatin1String(c.name) == QLatin1String("rotate")),
                  0)
            << c.name << ": " << describe(counts).toStdString();
    }
}

TEST(Faults, ACardWhoseReadsFailFromTheFirstPictureOnImportsNothingHalfWritten)
{
    REQUIRE_STRACE();
    Scene probe;
    probe.fillCard(3);
    const QStringList arguments{QStringLiteral("import"), probe.card(), QStringLiteral("--to"),
                                probe.imports()};
    // The reads a run makes before it opens the first picture on the card; every read after that fails.
    const QList<TracedCall> calls = probe.cli().trace(arguments, QStringLiteral("openat,read"));
    qsizetype firstOpen = 0;
    while (firstOpen < calls.size() &&
           !(calls.at(firstOpen).name == QStringLiteral("openat") &&
             calls.at(firstOpen).line.contains(QStringLiteral("/DCIM/100CANON/"))))
        ++firstOpen;
    ASSERT_LT(firstOpen, calls.size());
    int reads = 0;
    for (qsizetype i = 0; i < firstOpen; ++i)
        reads +=
            calls.at(i).name == QStringLiteral("read") && calls.at(i).thread == calls.at(firstOpen).thread;

    Scene scene;
    scene.fillCard(3);
    const CliRun run =
        scene.cli().run({QStringLiteral("import"), scene.card(), QStringLiteral("--to"), scene.imports()},
                        // Copies read through copy_file_range where the kernel can: a failing card fails that too.
                        {QStringLiteral("-e"), QStringLiteral("trace=read,copy_file_range"), QStringLiteral("-e"),
                         QStringLiteral("inject=read:error=EIO:when=%1+").arg(reads + 1), QStringLiteral("-e"),
                         QStringLiteral("inject=copy_file_range:error=EIO")});
    expectClearFailure(run, "import from a failing card");
    expectEachOnceIn(scene, QStringLiteral("card"), {QStringLiteral("card")}, "import from a failing card");
}

} // namespace
