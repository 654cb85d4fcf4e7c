// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli fav as a user runs it: output, messages, exit codes, and two runs at once.
#include "tests/cli/CliRunner.h"
#include "tests/library/DamagedDatabase.h"
#include "tests/support/TempFolder.h"

#include "library/LocalDatabaseManager.h"
#include "platform/AppPaths.h"

#include <QDir>
#include <QProcess>

#include <gtest/gtest.h>

#include <array>
#include <fstream>

using lumaro::testing::CliResult;
using lumaro::testing::expectHandedOver;
using lumaro::testing::runCli;
using lumaro::testing::runProgram;
using lumaro::testing::TempFolder;

namespace {

QStringList lines(const QString& text)
{
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QString databasePath()
{
    return QDir(lumaro::platform::AppPaths::dataDir()).filePath(QStringLiteral("fav.db"));
}

} // namespace

TEST(FavCommand, ListsFavouritesNewestChangeFirst)
{
    TempFolder folder;
    const QString a = folder.writePicture(QStringLiteral("a.jpg"));
    const QString b = folder.writePicture(QStringLiteral("with space 收藏.jpg"));
    const QString c = folder.writePicture(QStringLiteral("c.png"));
    ASSERT_EQ(runCli({QStringLiteral("fav"), QStringLiteral("add"), a, b, c}).exitCode, 0);
    ASSERT_EQ(runCli({QStringLiteral("fav"), QStringLiteral("type"), QStringLiteral("sss"), a}).exitCode, 0);
    ASSERT_EQ(runCli({QStringLiteral("fav"), QStringLiteral("remove"), b}).exitCode, 0);
    const auto listed = runCli({QStringLiteral("fav"), QStringLiteral("list")});
    EXPECT_EQ(listed.exitCode, 0);
    EXPECT_EQ(lines(listed.outText()), (QStringList{a, c}));
    const auto json = runCli({QStringLiteral("fav"), QStringLiteral("list"), QStringLiteral("--json")});
    EXPECT_TRUE(json.outText().contains(QStringLiteral("\"type\":\"SSS\"")));
}

TEST(FavCommand, AMissingPictureIsReportedAndTheOthersStillMarked)
{
    TempFolder folder;
    const QString a = folder.writePicture(QStringLiteral("a.jpg"));
    const auto result = runCli({QStringLiteral("fav"), QStringLiteral("add"), folder.filePath(QStringLiteral("gone.jpg")),
                                folder.path(), a});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.errText().contains(QStringLiteral("no such file: ")));
    EXPECT_TRUE(result.errText().contains(QStringLiteral("is a folder, not a picture")));
    EXPECT_EQ(lines(runCli({QStringLiteral("fav"), QStringLiteral("list")}).outText()), QStringList{a});
}

struct UsageCase
{
    const char* name;
    QStringList arguments;
};

class FavCommandUsage : public ::testing::TestWithParam<UsageCase>
{
};

TEST_P(FavCommandUsage, BadUsageExitsTwoAndWritesNothing)
{
    const auto result = runCli(QStringList{QStringLiteral("fav")} + GetParam().arguments);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errText().startsWith(QStringLiteral("lumaro-cli fav: "))) << result.errText().toStdString();
    EXPECT_FALSE(QFile::exists(databasePath()));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, FavCommandUsage,
    ::testing::Values(UsageCase{"noSubcommand", {}}, UsageCase{"unknownSubcommand", {QStringLiteral("like"), QStringLiteral("/a.jpg")}},
                      UsageCase{"addWithoutPaths", {QStringLiteral("add")}},
                      UsageCase{"typeWithoutType", {QStringLiteral("type")}},
                      UsageCase{"unknownType", {QStringLiteral("type"), QStringLiteral("SSSS"), QStringLiteral("/a.jpg")}},
                      UsageCase{"listWithPaths", {QStringLiteral("list"), QStringLiteral("/a.jpg")}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(FavCommand, ADatabaseFileThatIsNotADatabaseIsAClearErrorAndKept)
{
    QDir().mkpath(lumaro::platform::AppPaths::dataDir());
    const QByteArray original = QByteArray("these are my notes, not a database\n").repeated(200);
    QFile file(databasePath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(original);
    file.close();
    TempFolder folder;
    const auto result = runCli({QStringLiteral("fav"), QStringLiteral("add"), folder.writePicture(QStringLiteral("a.jpg"))});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errText().contains(QStringLiteral("cannot open the favourites database ") + databasePath()
                                          + QStringLiteral(": file is not a database")));
    const auto listed = runCli({QStringLiteral("fav"), QStringLiteral("list")});
    EXPECT_EQ(listed.exitCode, 2);
    EXPECT_TRUE(listed.errText().contains(QStringLiteral(": file is not a database")))
        << listed.errText().toStdString();
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), original);
}

TEST(FavCommand, AuditCountsPathlessRecordsAndMissingPictures)
{
    TempFolder folder;
    const QString a = folder.writePicture(QStringLiteral("a.jpg"));
    const QString b = folder.writePicture(QStringLiteral("b.jpg"));
    ASSERT_EQ(runCli({QStringLiteral("fav"), QStringLiteral("add"), a, b}).exitCode, 0);
    QFile::remove(b);
    const auto result = runCli({QStringLiteral("fav"), QStringLiteral("audit")});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(lines(result.outText()),
              (QStringList{QStringLiteral("records without a path: 0"), QStringLiteral("missing: ") + b}));
    // A missing picture may be on a disk that is not mounted: it stays a favourite.
    runCli({QStringLiteral("fav"), QStringLiteral("audit"), QStringLiteral("--clean")});
    EXPECT_EQ(lines(runCli({QStringLiteral("fav"), QStringLiteral("list")}).outText()), (QStringList{b, a}));
}

// Two windows or scripts marking pictures at the same moment: every mark must land, none may fail on the lock or
// on the UNIQUE path when both mark the same picture.
TEST(FavCommand, TwoProcessesMarkingAtOnceLoseNothing)
{
    TempFolder folder;
    QStringList shared, first, second;
    for (int i = 0; i < 15; ++i) {
        shared << folder.write(QStringLiteral("shared_%1.jpg").arg(i));
        first << folder.write(QStringLiteral("first_%1.jpg").arg(i));
        second << folder.write(QStringLiteral("second_%1.jpg").arg(i));
    }
    ASSERT_EQ(runCli({QStringLiteral("fav"), QStringLiteral("list")}).exitCode, 0); // the table exists before the race
    QProcess one, two;
    for (auto* process : {&one, &two})
        process->setProgram(QStringLiteral(LUMARO_CLI_PATH));
    one.setArguments(QStringList{QStringLiteral("fav"), QStringLiteral("add"), QStringLiteral("--quiet")} + shared + first);
    two.setArguments(QStringList{QStringLiteral("fav"), QStringLiteral("add"), QStringLiteral("--quiet")} + second + shared);
    one.start();
    two.start();
    ASSERT_TRUE(one.waitForFinished(20'000));
    ASSERT_TRUE(two.waitForFinished(20'000));
    EXPECT_EQ(one.exitCode(), 0) << one.readAllStandardError().toStdString();
    EXPECT_EQ(two.exitCode(), 0) << two.readAllStandardError().toStdString();
    QStringList listed = lines(runCli({QStringLiteral("fav"), QStringLiteral("list")}).outText());
    listed.sort();
    QStringList expected = shared + first + second;
    expected.sort();
    EXPECT_EQ(listed, expected);
}

// Random damage to fav.db: reading may still work, but a write would bury the damage under new pages. The
// store is left byte for byte as it was, for the user to recover, and the command says why it wrote nothing.
TEST(FavCommand, ADamagedDatabaseIsRefusedForWritingAndKept)
{
    ASSERT_EQ(runCli({QStringLiteral("fav"), QStringLiteral("list")}).exitCode, 0); // creates the store
    {
        lumaro::library::LocalDatabaseManager db;
        ASSERT_TRUE(db.open(databasePath()));
        ASSERT_TRUE(db.inTransaction([&] {
            for (int i = 0; i < 300; ++i)
                db.execute(
                    QStringLiteral("INSERT INTO favourites (file_path, file_name, is_favour, favour_type, "
                                   "created_at, updated_at)\nVALUES (?, ?, 1, NULL, ?, ?);"),
                    {QStringLiteral("/old/shoot/IMG_%1.JPG").arg(i, 4, 10, QLatin1Char('0')),
                     QStringLiteral("IMG_%1.JPG").arg(i, 4, 10, QLatin1Char('0')), 1.0 + i, 1.0 + i});
            return true;
        }));
    }
    ASSERT_TRUE(lumaro::testing::damageTablePageHolding(databasePath(), "/old/shoot/IMG_0001.JPG"));
    QFile file(databasePath());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray damaged = file.readAll();
    file.close();

    TempFolder folder;
    const auto result =
        runCli({QStringLiteral("fav"), QStringLiteral("add"), folder.writePicture(QStringLiteral("a.jpg"))});
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.errText().contains(QStringLiteral("lumaro-cli fav: the favourites database ") +
                                          databasePath() +
                                          QStringLiteral(" is damaged, nothing was written")))
        << result.errText().toStdString();
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), damaged);
}

// Four scripts marking pictures on a store none of them has seen yet: every process waits its turn (the lock
// taken at once, the store created once) and every mark lands.
TEST(FavCommand, FourProcessesMarkingAtOnceAllSucceed)
{
    TempFolder folder;
    QStringList expected;
    std::array<QProcess, 4> processes;
    for (int p = 0; p < int(processes.size()); ++p) {
        QStringList pictures;
        for (int i = 0; i < 40; ++i)
            pictures << folder.write(QStringLiteral("p%1_%2.jpg").arg(p).arg(i));
        expected += pictures;
        processes[p].setProgram(QStringLiteral(LUMARO_CLI_PATH));
        processes[p].setArguments(
            QStringList{QStringLiteral("fav"), QStringLiteral("add"), QStringLiteral("--quiet")} + pictures);
    }
    for (QProcess& process : processes)
        process.start();
    for (QProcess& process : processes) {
        ASSERT_TRUE(process.waitForFinished(60'000));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    }
    QStringList listed = lines(runCli({QStringLiteral("fav"), QStringLiteral("list")}).outText());
    listed.sort();
    expected.sort();
    EXPECT_EQ(listed, expected);
}

// A picture from an old camera or a Latin-1 archive whose name is not UTF-8: marked under its real bytes, so
// the store names the same file, and listed with that byte escaped.
TEST(FavCommand, ANameThatIsNotUtf8IsMarkedUnderItsRealBytes)
{
    TempFolder folder;
    const QByteArray picture = QFile::encodeName(folder.path()) + QByteArrayLiteral("/caf\xE9.jpg");
    std::ofstream(picture.constData()) << "picture";
    QProcess shell; // QProcess hands arguments over as UTF-8: the shell writes the byte itself
    shell.start(QStringLiteral("sh"),
                {QStringLiteral("-c"), QStringLiteral("exec \"$0\" fav add \"$1/$(printf 'caf\\351.jpg')\""),
                 QStringLiteral(LUMARO_CLI_PATH), folder.path()});
    ASSERT_TRUE(shell.waitForFinished(20'000));
    EXPECT_EQ(shell.exitCode(), 0) << shell.readAllStandardError().toStdString();

    EXPECT_EQ(lines(runCli({QStringLiteral("fav"), QStringLiteral("list")}).outText()),
              QStringList{folder.path() + QStringLiteral("/caf\\xe9.jpg")});
    lumaro::library::LocalDatabaseManager db;
    ASSERT_TRUE(db.open(databasePath()));
    const auto rows = db.query(QStringLiteral("SELECT CAST(file_path AS BLOB) AS bytes FROM favourites;"));
    ASSERT_TRUE(rows && rows->size() == 1);
    EXPECT_EQ(rows->constFirst().value(QStringLiteral("bytes")).toByteArray(), picture);
}

// lumaro-cli lists the favourites itself, without Qt, from a store lumaro-cli-light made: both must print the
// same bytes, log lines included, for paths that are hard to print.
class FavListFrontEnd : public ::testing::TestWithParam<QStringList>
{
};

TEST_P(FavListFrontEnd, PrintsWhatTheLightProgramPrints)
{
    TempFolder folder;
    const QString plain = folder.writePicture(QStringLiteral("a.jpg"));
    const QString hard =
        folder.writePicture(QStringLiteral("tab\tnew\nline back\\slash \U0001F4F7 收藏.jpg"));
    const QString unmarked = folder.writePicture(QStringLiteral("unmarked.jpg"));
    ASSERT_EQ(runCli({QStringLiteral("fav"), QStringLiteral("add"), plain, hard, unmarked}).exitCode, 0);
    ASSERT_EQ(runCli({QStringLiteral("fav"), QStringLiteral("remove"), unmarked}).exitCode, 0);
    ASSERT_EQ(runCli({QStringLiteral("fav"), QStringLiteral("type"), QStringLiteral("heart"), hard}).exitCode, 0);

    const QStringList arguments = QStringList{QStringLiteral("fav")} + GetParam();
    const CliResult front = lumaro::testing::runFrontAndLight(arguments);
    EXPECT_EQ(front.exitCode, 0) << front.errText().toStdString();
    // Answered by the front end itself: a lone copy of it, with no helper to hand over to, prints the same.
    TempFolder bin;
    const QString lone = bin.filePath(QStringLiteral("lumaro-cli"));
    ASSERT_TRUE(QFile::copy(QStringLiteral(LUMARO_CLI_PATH), lone));
    const CliResult alone = runProgram(lone, arguments);
    EXPECT_EQ(alone.exitCode, 0) << alone.errText().toStdString();
    EXPECT_EQ(alone.out, front.out);
    EXPECT_TRUE(front.outText().contains(QStringLiteral("a.jpg"))) << front.out.toStdString();
    EXPECT_FALSE(front.outText().contains(QStringLiteral("unmarked.jpg")));
}

INSTANTIATE_TEST_SUITE_P(Options, FavListFrontEnd,
                         ::testing::Values(QStringList{QStringLiteral("list")},
                                           QStringList{QStringLiteral("list"), QStringLiteral("-q")},
                                           QStringList{QStringLiteral("--quiet"), QStringLiteral("list")},
                                           QStringList{QStringLiteral("list"), QStringLiteral("--json")},
                                           QStringList{QStringLiteral("--json"), QStringLiteral("-q"),
                                                       QStringLiteral("list")}));

// What the front end does not read it leaves to lumaro-cli-light, which makes the store or its missing index.
TEST(FavCommand, ListingMakesAMissingStoreAndAMissingIndex)
{
    const auto first = runCli({QStringLiteral("fav"), QStringLiteral("list")});
    EXPECT_EQ(first.exitCode, 0) << first.errText().toStdString();
    EXPECT_TRUE(first.errText().contains(QStringLiteral("✅ 收藏表创建成功")))
        << first.errText().toStdString();
    const auto hasNameIndex = [] {
        lumaro::library::LocalDatabaseManager db;
        const auto rows =
            db.open(databasePath())
                ? db.query(QStringLiteral("SELECT name FROM sqlite_master WHERE name = 'idx_file_name';"))
                : std::nullopt;
        return rows && rows->size() == 1;
    };
    ASSERT_TRUE(hasNameIndex());
    {
        lumaro::library::LocalDatabaseManager db;
        ASSERT_TRUE(db.open(databasePath()));
        ASSERT_TRUE(db.execute(QStringLiteral("DROP INDEX idx_file_name;")));
    }
    EXPECT_EQ(runCli({QStringLiteral("fav"), QStringLiteral("list"), QStringLiteral("-q")}).exitCode, 0);
    EXPECT_TRUE(hasNameIndex());
}

// lumaro-cli marks and unmarks pictures itself, without Qt, when it can do exactly what lumaro-cli-light
// would; anything else it hands over before writing or printing anything. Each case runs on a fresh store
// through a lone copy of lumaro-cli (no helper beside it, so a hand-over shows as "cannot start") and then
// through lumaro-cli-light: what the front end answers must read, print and store as the light program's.
namespace {

struct FavChangeCase
{
    const char* name;
    QStringList arguments; // after "fav"; "%1" stands for the pictures' folder
    bool inPicturesFolder; // run there, so relative paths resolve against it
    QStringList storedBefore; // file_path, is_favour and favour_type of rows already in the store
    bool copyOn;
    bool storeExists;
    bool answeredAlone;
};

class FavChangeFrontEnd : public ::testing::TestWithParam<FavChangeCase>
{
protected:
    FavChangeFrontEnd()
    {
        pictures.writePicture(QStringLiteral("a.jpg"));
        pictures.writePicture(QStringLiteral("b c.jpg"));
        pictures.writePicture(QStringLiteral("sub/d.jpg"));
        QDir().mkpath(bin.filePath(QStringLiteral("bin")));
        QFile::copy(QStringLiteral(LUMARO_CLI_PATH), lone);
    }

    QString placed(QString text) const { return text.replace(QStringLiteral("%1"), pictures.path()); }

    // The case's store and settings, from nothing.
    void prepare() const
    {
        for (const char* suffix : {"", "-wal", "-shm"})
            QFile::remove(databasePath() + QString::fromLatin1(suffix));
        const QString settings = QDir(lumaro::platform::AppPaths::configDir()).filePath(QStringLiteral("lumaro.conf"));
        QFile::remove(settings);
        if (GetParam().copyOn) {
            QDir().mkpath(lumaro::platform::AppPaths::configDir());
            QFile file(settings);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly));
            file.write("[General]\nLMR_FlowFavCopyEnabled=true\n");
        }
        if (!GetParam().storeExists)
            return;
        ASSERT_EQ(runProgram(QStringLiteral(LUMARO_CLI_LIGHT_PATH), {QStringLiteral("fav"), QStringLiteral("list")})
                      .exitCode,
                  0);
        lumaro::library::LocalDatabaseManager db;
        ASSERT_TRUE(db.open(databasePath()));
        double when = 1;
        for (const QString& row : GetParam().storedBefore) {
            const QStringList values = placed(row).split(QLatin1Char('|'));
            ASSERT_TRUE(db.execute(QStringLiteral("INSERT INTO favourites (file_path, file_name, is_favour, "
                                                  "favour_type, created_at, updated_at) VALUES (?, ?, ?, ?, ?, ?);"),
                                   {values.at(0), values.at(0).section(QLatin1Char('/'), -1), values.at(1).toInt(),
                                    values.at(2).isEmpty() ? QVariant() : QVariant(values.at(2)), when, when}));
            ++when;
        }
    }

    QStringList rows() const
    {
        lumaro::library::LocalDatabaseManager db;
        if (!QFile::exists(databasePath()) || !db.open(databasePath()))
            return {QStringLiteral("(no store)")};
        QStringList found;
        db.queryEach(QStringLiteral("SELECT id, file_path, file_name, is_favour, favour_type, "
                                    "created_at <= updated_at FROM favourites ORDER BY id;"),
                     {}, [&](const QVariantList& values) {
                         QStringList texts;
                         for (const QVariant& value : values)
                             texts << (value.isNull() ? QStringLiteral("NULL") : value.toString());
                         found << texts.join(QLatin1Char('|'));
                     });
        return found;
    }

    CliResult run(const QString& program) const
    {
        QStringList arguments{QStringLiteral("fav")};
        for (const QString& argument : GetParam().arguments)
            arguments << placed(argument);
        return runProgram(program, arguments, GetParam().inPicturesFolder ? pictures.path() : QString());
    }

    TempFolder pictures;
    TempFolder bin;
    const QString lone = bin.filePath(QStringLiteral("bin/lumaro-cli"));
};

} // namespace

TEST_P(FavChangeFrontEnd, AnswersAsTheLightProgramOrHandsOverHavingDoneNothing)
{
    prepare();
    const QStringList before = rows();
    const CliResult front = run(lone);
    const QStringList frontRows = rows();
    prepare();
    const CliResult light = run(QStringLiteral(LUMARO_CLI_LIGHT_PATH));
    if (!GetParam().answeredAlone) {
        expectHandedOver(front);
        EXPECT_EQ(frontRows, before);
        return;
    }
    EXPECT_EQ(front.exitCode, light.exitCode) << light.errText().toStdString();
    EXPECT_EQ(front.out, light.out);
    EXPECT_EQ(front.errText(), light.errText());
    EXPECT_EQ(frontRows, rows());
    EXPECT_NE(frontRows, before) << "the case changes nothing, so it cannot tell a wrong change";
}

INSTANTIATE_TEST_SUITE_P(
    Cases, FavChangeFrontEnd,
    ::testing::Values(
        FavChangeCase{"addTwo", {"add", "%1/a.jpg", "%1/b c.jpg"}, false, {}, false, true, true},
        FavChangeCase{"addRelativeUntidy", {"add", "./sub/../a.jpg", "sub//d.jpg"}, true, {}, false, true, true},
        FavChangeCase{"quietAfterThePath", {"add", "%1/a.jpg", "-q"}, false, {}, false, true, true},
        FavChangeCase{"addKeepsTheType", {"add", "%1/a.jpg"}, false, {"%1/a.jpg|0|SSS"}, false, true, true},
        FavChangeCase{"removeMarked", {"--quiet", "remove", "%1/a.jpg"}, false, {"%1/a.jpg|1|"}, false, true, true},
        FavChangeCase{"removeUnknownAmongMarked",
                      {"remove", "%1/gone.jpg", "%1/a.jpg"}, false, {"%1/a.jpg|1|"}, false, true, true},
        FavChangeCase{"writtenFormsMerge",
                      {"add", "%1/sub/../a.jpg"}, false, {"%1/sub/../a.jpg|0|H", "%1/a.jpg|0|", "|1|"}, false, true,
                      true},
        FavChangeCase{"removeWhileCopyIsOn", {"remove", "%1/a.jpg"}, false, {"%1/a.jpg|1|"}, true, true, true},
        FavChangeCase{"typeMarksAndKeepsTheMark", {"type", "sss", "%1/a.jpg", "%1/b c.jpg"}, false,
                      {"%1/a.jpg|0|H"}, false, true, true},
        FavChangeCase{"typeInOtherCapitals", {"-q", "type", "HeArT", "%1/a.jpg"}, false, {}, false, true, true},
        FavChangeCase{"typeNoneClears", {"type", "NONE", "%1/a.jpg", "%1/gone.jpg"}, false, {"%1/a.jpg|1|SSS"},
                      false, true, true},
        FavChangeCase{"typeNoneWhileCopyIsOn", {"type", "none", "%1/a.jpg"}, false, {"%1/a.jpg|1|A"}, true, true,
                      true},
        FavChangeCase{"typeUnknown", {"type", "gold", "%1/a.jpg"}, false, {}, false, true, false},
        FavChangeCase{"typeNotAscii", {"type", "ſſſ", "%1/a.jpg"}, false, {}, false, true, false},
        FavChangeCase{"typeWithoutPath", {"type", "sss"}, false, {}, false, true, false},
        FavChangeCase{"typeWhileCopyIsOn", {"type", "sss", "%1/a.jpg"}, false, {}, true, true, false},
        FavChangeCase{"typeMissingPicture", {"type", "sss", "%1/gone.jpg"}, false, {}, false, true, false},
        FavChangeCase{"missingPicture", {"add", "%1/a.jpg", "%1/gone.jpg"}, false, {}, false, true, false},
        FavChangeCase{"folder", {"add", "%1/sub"}, false, {}, false, true, false},
        FavChangeCase{"json", {"add", "--json", "%1/a.jpg"}, false, {}, false, true, true},
        FavChangeCase{"jsonNotAFavourite", {"remove", "--json", "%1/gone \"q\".jpg", "%1/a.jpg"}, false,
                      {"%1/a.jpg|1|"}, false, true, true},
        FavChangeCase{"noPath", {"remove"}, false, {}, false, true, false},
        FavChangeCase{"climbsAboveTheRoot", {"remove", "/../a.jpg"}, false, {"/a.jpg|1|"}, false, true, false},
        FavChangeCase{"addWhileCopyIsOn", {"add", "%1/a.jpg"}, false, {}, true, true, false},
        FavChangeCase{"noStoreYet", {"add", "%1/a.jpg"}, false, {}, false, false, false}),
    [](const auto& info) { return std::string(info.param.name); });

// `fav audit` changes nothing (but with --clean, which the front end leaves to lumaro-cli-light): its cases
// are held to the light program's output and log lines, and to leaving every row as it was.
class FavAuditFrontEnd : public FavChangeFrontEnd
{
};

TEST_P(FavAuditFrontEnd, AnswersAsTheLightProgramOrHandsOverHavingDoneNothing)
{
    prepare();
    const QStringList before = rows();
    const CliResult front = run(lone);
    EXPECT_EQ(rows(), before);
    prepare();
    const CliResult light = run(QStringLiteral(LUMARO_CLI_LIGHT_PATH));
    if (!GetParam().answeredAlone) {
        expectHandedOver(front);
        return;
    }
    EXPECT_EQ(front.exitCode, light.exitCode) << light.errText().toStdString();
    EXPECT_EQ(front.out, light.out);
    EXPECT_EQ(front.errText(), light.errText());
}

INSTANTIATE_TEST_SUITE_P(
    Cases, FavAuditFrontEnd,
    ::testing::Values(
        FavChangeCase{"emptyStore", {"audit"}, false, {}, false, true, true},
        FavChangeCase{"pathlessAndMissing",
                      {"audit"}, false,
                      {"%1/a.jpg|1|", "|1|", "%1/gone.jpg|1|H", "%1/gone too.jpg|0|", "%1/新\tline.jpg|1|"},
                      false, true, true},
        FavChangeCase{"json", {"--json", "audit", "-q"}, false,
                      {"%1/gone \"q\".jpg|1|", "|1|", "%1/a.jpg|1|"}, false, true, true},
        FavChangeCase{"quiet", {"audit", "--quiet"}, false, {"%1/gone.jpg|1|"}, false, true, true},
        FavChangeCase{"clean", {"audit", "--clean"}, false, {"|1|"}, false, true, false},
        FavChangeCase{"withAPath", {"audit", "%1/a.jpg"}, false, {}, false, true, false},
        FavChangeCase{"noStoreYet", {"audit"}, false, {}, false, false, false}),
    [](const auto& info) { return std::string(info.param.name); });
