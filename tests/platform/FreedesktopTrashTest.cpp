// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FreedesktopTrash.h"
#include "platform/TrashRestorer.h"
#include "platform/files/FileNameCodec.h"
#include "platform/files/Utf8Sequence.h"

#include "tests/support/TempFolder.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStorageInfo>
#include <QTemporaryDir>
#include <QUrl>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

using namespace lumaro::platform;
using lumaro::testing::TempFolder;

namespace {

// The .trashinfo's lines as written, so that they are checked by a reader other than ours.
QMap<QString, QByteArray> infoFields(const QString& infoPath)
{
    QFile file(infoPath);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(infoPath);
    QMap<QString, QByteArray> fields;
    const QList<QByteArray> lines = file.readAll().split('\n');
    EXPECT_EQ(lines.value(0), QByteArrayLiteral("[Trash Info]"));
    for (const QByteArray& line : lines) {
        const qsizetype eq = line.indexOf('=');
        if (eq > 0)
            fields.insert(QString::fromLatin1(line.left(eq)), line.mid(eq + 1));
    }
    return fields;
}

// Sets an environment variable for the life of the object.
class ScopedEnv
{
public:
    ScopedEnv(const char* name, const QByteArray& value)
        : m_name(name), m_old(qgetenv(name)), m_had(qEnvironmentVariableIsSet(name))
    {
        qputenv(name, value);
    }
    ~ScopedEnv()
    {
        if (m_had)
            qputenv(m_name, m_old);
        else
            qunsetenv(m_name);
    }

private:
    const char* m_name;
    QByteArray m_old;
    bool m_had;
};

class TrashedNames : public ::testing::TestWithParam<const char*>
{
};

std::string repeated(const std::string& text, int times)
{
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

} // namespace

TEST_P(TrashedNames, RoundTripThroughTheTrashInfoPath)
{
    TempFolder folder;
    const QString name = QString::fromUtf8(GetParam());
    const QString path = folder.write(QStringLiteral("shoot 1/") + name, QByteArrayLiteral("picture"));

    QString error;
    FreedesktopTrash trash;
    const auto item = trash.moveToTrash(path, &error);
    ASSERT_TRUE(item) << qPrintable(error);

    EXPECT_FALSE(QFileInfo::exists(path));
    EXPECT_EQ(QFileInfo(item->trashedPath).absolutePath(),
              TrashDirectories::homeTrash() + QStringLiteral("/files"));
    QFile trashed(item->trashedPath);
    ASSERT_TRUE(trashed.open(QIODevice::ReadOnly));
    EXPECT_EQ(trashed.readAll(), QByteArrayLiteral("picture"));

    const auto fields = infoFields(item->trashInfoPath);
    const QByteArray raw = fields.value(QStringLiteral("Path"));
    // Encoded: plain ASCII, no space, no "#", every "%" starting an escape.
    for (char c : raw) {
        EXPECT_GT(uchar(c), 0x20);
        EXPECT_LT(uchar(c), 0x7f);
        EXPECT_NE(c, '#');
    }
    EXPECT_EQ(QUrl::fromPercentEncoding(raw), QFileInfo(path).absoluteFilePath());

    const QDateTime when =
        QDateTime::fromString(QString::fromLatin1(fields.value(QStringLiteral("DeletionDate"))),
                              QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
    ASSERT_TRUE(when.isValid());
    EXPECT_LE(qAbs(when.secsTo(QDateTime::currentDateTime())), 120); // local time, not UTC
}

INSTANTIATE_TEST_SUITE_P(FreedesktopTrash, TrashedNames,
                         ::testing::Values("plain.jpg", "with space.jpg", "100%.jpg", "%41.jpg", "#1 #2.jpg",
                                           "照片 é.jpg", "a+b=c&d;e.JPG"));

TEST(FreedesktopTrash, AClashingNameGetsAFreeOneAndNothingIsReplaced)
{
    TempFolder folder;
    const QString first = folder.write(QStringLiteral("a/IMG_0001.JPG"), QByteArrayLiteral("first"));
    const QString second = folder.write(QStringLiteral("b/IMG_0001.JPG"), QByteArrayLiteral("second"));
    FreedesktopTrash trash;
    QString error;
    const auto one = trash.moveToTrash(first, &error);
    const auto two = trash.moveToTrash(second, &error);
    ASSERT_TRUE(one && two) << qPrintable(error);
    EXPECT_NE(one->trashedPath, two->trashedPath);
    EXPECT_EQ(QFileInfo(two->trashedPath).fileName(), QStringLiteral("IMG_0001.2.JPG"));
    EXPECT_EQ(TrashRestorer::entryFor(one->trashedPath).originalPath, first);
    EXPECT_EQ(TrashRestorer::entryFor(two->trashedPath).originalPath, second);
    QFile kept(one->trashedPath);
    ASSERT_TRUE(kept.open(QIODevice::ReadOnly));
    EXPECT_EQ(kept.readAll(), QByteArrayLiteral("first"));
}

// A name whose record ("NAME.trashinfo") would pass the 255 bytes of a file name: a long title in Chinese (3
// bytes a character), a long ASCII one, one whose last dot starts no extension. Two of each, from two folders:
// each goes in under a shortened name cut between characters, its extension kept, and is found again and put
// back under its whole name.
class LongTrashedNames : public ::testing::TestWithParam<std::string>
{
};

TEST_P(LongTrashedNames, GoInUnderAShortenedNameAndComeBackWhole)
{
    TempFolder folder;
    const QString name = QString::fromStdString(GetParam());
    const QString extension = QFileInfo(name).suffix().size() <= 31 ? QFileInfo(name).suffix() : QString();
    FreedesktopTrash trash;
    for (const QString& shoot : {QStringLiteral("day 1"), QStringLiteral("day 2")}) {
        const QString path = folder.write(shoot + QLatin1Char('/') + name, shoot.toUtf8());
        QString error;
        const auto item = trash.moveToTrash(path, &error);
        ASSERT_TRUE(item) << qPrintable(error);
        const QByteArray itemName = FileNameCodec::encode(QFileInfo(item->trashedPath).fileName());
        EXPECT_LE(itemName.size() + qsizetype(sizeof(".trashinfo") - 1), 255);
        EXPECT_TRUE(isValidUtf8(itemName.toStdString())) << "a character was cut in two";
        if (!extension.isEmpty())
            EXPECT_TRUE(QString::fromUtf8(itemName).endsWith(QLatin1Char('.') + extension)) << itemName.constData();

        const auto found = TrashRestorer().findByOriginalPath(path);
        ASSERT_EQ(found.size(), 1);
        EXPECT_EQ(found.constFirst().trashedPath, item->trashedPath);
        const RenameResult back = TrashRestorer().putBack(item->trashedPath, path);
        ASSERT_TRUE(back.ok) << qPrintable(back.error);
        EXPECT_EQ(folder.read(shoot + QLatin1Char('/') + name), shoot.toUtf8());
        ASSERT_TRUE(trash.moveToTrash(path, &error)) << qPrintable(error); // for the second to clash with
    }
}

INSTANTIATE_TEST_SUITE_P(FreedesktopTrash, LongTrashedNames,
                         ::testing::Values(repeated("长", 82) + ".jpg", std::string(247, 'a') + ".JPG",
                                           "x." + std::string(240, 'y'), repeated("长", 81) + "é.jpeg"),
                         [](const auto& info) { return std::to_string(info.index); });

TEST(FreedesktopTrash, AnOrphanInFilesIsNeverOverwritten)
{
    TempFolder folder;
    FreedesktopTrash trash;
    QString error;
    // A leftover of a trasher that stopped half-way: files/x.jpg with no record.
    ASSERT_TRUE(TrashDirectories::ensure(TrashDirectories::homeTrash(), &error)) << qPrintable(error);
    QFile orphan(TrashDirectories::homeTrash() + QStringLiteral("/files/x.jpg"));
    ASSERT_TRUE(orphan.open(QIODevice::WriteOnly));
    orphan.write("orphan");
    orphan.close();
    const auto item = trash.moveToTrash(folder.write(QStringLiteral("x.jpg"), "new"), &error);
    ASSERT_TRUE(item) << qPrintable(error);
    EXPECT_EQ(QFileInfo(item->trashedPath).fileName(), QStringLiteral("x.2.jpg"));
    ASSERT_TRUE(orphan.open(QIODevice::ReadOnly));
    EXPECT_EQ(orphan.readAll(), QByteArrayLiteral("orphan"));
}

TEST(FreedesktopTrash, AMissingDataHomeIsCreatedAndNothingLandsInTheWorkingDirectory)
{
    TempFolder place;
    const QString home = place.makeFolder(QStringLiteral("fresh-home"));
    const QString work = place.makeFolder(QStringLiteral("cwd"));
    const QString picture = place.write(QStringLiteral("pics/a.jpg"));
    ScopedEnv noDataHome("XDG_DATA_HOME", QByteArray());
    ScopedEnv freshHome("HOME", QFile::encodeName(home));
    const QString previous = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(work));

    QString error;
    const auto item = FreedesktopTrash().moveToTrash(picture, &error);
    QDir::setCurrent(previous);

    ASSERT_TRUE(item) << qPrintable(error);
    EXPECT_TRUE(item->trashedPath.startsWith(home + QStringLiteral("/.local/share/Trash/files/")));
    EXPECT_TRUE(QDir(work).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    struct stat info
    {
    };
    ASSERT_EQ(::stat(QFile::encodeName(home + QStringLiteral("/.local/share")).constData(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777, 0700u);
}

TEST(FreedesktopTrash, NoHomeMeansNoTrashAndTheFileStays)
{
    TempFolder place;
    const QString picture = place.write(QStringLiteral("a.jpg"));
    ScopedEnv noDataHome("XDG_DATA_HOME", QByteArray());
    ScopedEnv relativeHome("HOME", QByteArrayLiteral("relative/home"));
    QString error;
    EXPECT_FALSE(FreedesktopTrash().moveToTrash(picture, &error));
    EXPECT_FALSE(error.isEmpty());
    EXPECT_TRUE(QFileInfo::exists(picture));
}

namespace {

// Everything under `top` is a second volume; the rest is the home volume.
VolumeLookup pretendVolume(const QString& top)
{
    return [top](const QString& path) -> std::optional<Volume> {
        if (path == top || path.startsWith(top + QLatin1Char('/')))
            return Volume{2, top};
        return Volume{1, QStringLiteral("/")};
    };
}

} // namespace

// The mount table is the oracle; a link is placed on the volume it leads to, not the one it sits in.
TEST(TrashDirectories, AVolumesTopIsItsMountPointAlsoThroughALinkAndForPathsNotYetMade)
{
    TempFolder folder;
    const QString picture = folder.write(QStringLiteral("DCIM/IMG 1.JPG"));
    const QString link = folder.filePath(QStringLiteral("to proc"));
    ASSERT_TRUE(QFile::link(QStringLiteral("/proc/self"), link));
    const QString folderTop = QStorageInfo(folder.path()).rootPath();
    struct Case
    {
        QString path;
        QString top;
    };
    const Case cases[] = {
        {picture, folderTop},
        {folder.filePath(QStringLiteral("not yet/made.jpg")), folderTop},
        {link + QStringLiteral("/status"), QStringLiteral("/proc")},
    };
    for (const Case& c : cases) {
        const auto volume = systemVolumeLookup()(c.path);
        ASSERT_TRUE(volume) << qPrintable(c.path);
        EXPECT_EQ(volume->topDir, c.top) << qPrintable(c.path);
    }
    struct stat proc {};
    ASSERT_EQ(::stat("/proc/self", &proc), 0);
    EXPECT_EQ(systemVolumeLookup()(link)->device, quint64(proc.st_dev));
}

TEST(FreedesktopTrash, AFileOnAnotherVolumeGoesToThatVolumesTrashWithARelativePath)
{
    TempFolder card;
    const QString picture = card.write(QStringLiteral("DCIM/100CANON/IMG 1.JPG"));
    QString error;
    const auto item = FreedesktopTrash(pretendVolume(card.path())).moveToTrash(picture, &error);
    ASSERT_TRUE(item) << qPrintable(error);
    const QString trashDir = card.path() + QStringLiteral("/.Trash-") + QString::number(::getuid());
    EXPECT_EQ(item->trashedPath, trashDir + QStringLiteral("/files/IMG 1.JPG"));
    EXPECT_EQ(infoFields(item->trashInfoPath).value(QStringLiteral("Path")),
              QByteArrayLiteral("DCIM/100CANON/IMG%201.JPG"));
    EXPECT_EQ(TrashRestorer::entryFor(item->trashedPath).originalPath, picture);
}

// With the system's own volume lookup, and /dev/shm as the second volume most machines have: a link is
// trashed as itself where it sits (its target's volume cannot take it by rename), and a picture reached
// through a linked folder goes to the trash of the volume it is on, recorded by the path it was given.
TEST(FreedesktopTrash, ALinkIsTrashedWhereItSitsAndAPathThroughALinkIsRecordedAsGiven)
{
    QTemporaryDir elsewhere(QStringLiteral("/dev/shm/lumaro-trash-XXXXXX"));
    TempFolder pictures;
    struct stat shm
    {
    }, here{};
    if (!elsewhere.isValid() || ::stat("/dev/shm", &shm) != 0 ||
        ::stat(QFile::encodeName(pictures.path()).constData(), &here) != 0 || shm.st_dev == here.st_dev)
        GTEST_SKIP() << "no second volume at /dev/shm";
    FreedesktopTrash trash;
    QString error;

    const QString target = elsewhere.filePath(QStringLiteral("IMG 1.JPG"));
    ASSERT_TRUE(QFile(target).open(QIODevice::WriteOnly));
    const QString link = pictures.filePath(QStringLiteral("IMG 1.JPG"));
    ASSERT_TRUE(QFile::link(target, link));
    const auto trashedLink = trash.moveToTrash(link, &error);
    ASSERT_TRUE(trashedLink) << qPrintable(error);
    EXPECT_TRUE(trashedLink->trashedPath.startsWith(TrashDirectories::homeTrash() + QLatin1Char('/')));
    EXPECT_TRUE(QFileInfo(trashedLink->trashedPath).isSymLink());
    EXPECT_TRUE(QFileInfo::exists(target));

    ASSERT_TRUE(QDir(elsewhere.path()).mkpath(QStringLiteral("DCIM")));
    ASSERT_TRUE(QFile(elsewhere.filePath(QStringLiteral("DCIM/IMG 2.JPG"))).open(QIODevice::WriteOnly));
    ASSERT_TRUE(
        QFile::link(elsewhere.filePath(QStringLiteral("DCIM")), pictures.filePath(QStringLiteral("card"))));
    const QString throughLink = pictures.filePath(QStringLiteral("card/IMG 2.JPG"));
    const auto trashed = trash.moveToTrash(throughLink, &error);
    ASSERT_TRUE(trashed) << qPrintable(error);
    EXPECT_FALSE(trashed->trashedPath.startsWith(TrashDirectories::homeTrash() + QLatin1Char('/')));
    EXPECT_EQ(infoFields(trashed->trashInfoPath).value(QStringLiteral("Path")),
              FreedesktopTrash::encodedPath(throughLink));
    EXPECT_EQ(TrashRestorer::entryFor(trashed->trashedPath).originalPath, throughLink);

    // The volume's trash is outside the test's folders: take back what went there.
    QFile::remove(trashed->trashedPath);
    QFile::remove(trashed->trashInfoPath);
    const QString volumeTrash = QFileInfo(QFileInfo(trashed->trashedPath).absolutePath()).absolutePath();
    for (const QString& folder : QStringList{volumeTrash + QStringLiteral("/files"),
                                             volumeTrash + QStringLiteral("/info"), volumeTrash})
        QDir().rmdir(folder);
}

TEST(FreedesktopTrash, AnAdministratorsStickyTrashIsUsedButNotALinkedOne)
{
    TempFolder card;
    const QString shared = card.makeFolder(QStringLiteral(".Trash"));
    ASSERT_EQ(::chmod(QFile::encodeName(shared).constData(), 01777), 0);
    QString error;
    const auto item =
        FreedesktopTrash(pretendVolume(card.path())).moveToTrash(card.write(QStringLiteral("a.jpg")), &error);
    ASSERT_TRUE(item) << qPrintable(error);
    EXPECT_TRUE(
        item->trashedPath.startsWith(shared + QLatin1Char('/') + QString::number(::getuid()) + "/files/"));

    TempFolder other;
    const QString elsewhere = other.makeFolder(QStringLiteral("target"));
    ASSERT_EQ(::chmod(QFile::encodeName(elsewhere).constData(), 01777), 0);
    ASSERT_TRUE(QFile::link(elsewhere, other.filePath(QStringLiteral(".Trash"))));
    const auto second = FreedesktopTrash(pretendVolume(other.path()))
                            .moveToTrash(other.write(QStringLiteral("b.jpg")), &error);
    ASSERT_TRUE(second) << qPrintable(error);
    EXPECT_TRUE(second->trashedPath.contains(QStringLiteral("/.Trash-")));
}

TEST(TrashRestorer, FindsTheNewestItemFromAnOriginalPath)
{
    TempFolder folder;
    const QString original = folder.filePath(QStringLiteral("IMG 7.jpg"));
    QString error;
    ASSERT_TRUE(TrashDirectories::ensure(TrashDirectories::homeTrash(), &error));
    const auto put = [&](const QString& name, const QByteArray& date) {
        QFile info(TrashDirectories::homeTrash() + QStringLiteral("/info/") + name +
                   QStringLiteral(".trashinfo"));
        EXPECT_TRUE(info.open(QIODevice::WriteOnly));
        info.write("[Trash Info]\nPath=" + FreedesktopTrash::encodedPath(original) +
                   "\nDeletionDate=" + date + "\n");
        QFile file(TrashDirectories::homeTrash() + QStringLiteral("/files/") + name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    };
    put(QStringLiteral("IMG 7.jpg"), "2024-01-01T10:00:00");
    put(QStringLiteral("IMG 7.2.jpg"), "2024-03-01T10:00:00");
    put(QStringLiteral("IMG 7.3.jpg"), "2023-12-01T10:00:00");

    const auto found = TrashRestorer().findByOriginalPath(original);
    ASSERT_EQ(found.size(), 3);
    EXPECT_TRUE(found.at(0).trashedPath.endsWith(QStringLiteral("IMG 7.2.jpg")));
    EXPECT_TRUE(found.at(2).trashedPath.endsWith(QStringLiteral("IMG 7.3.jpg")));
}

TEST(TrashRestorer, PutsBackWhatAnotherProgramTrashed)
{
    if (!TrashRestorer::isGioAvailable())
        GTEST_SKIP() << "gio is not installed";
    TempFolder folder;
    const QString picture = folder.write(QStringLiteral("from gio #1.jpg"), QByteArrayLiteral("gio"));
    QProcess gio;
    gio.start(QStringLiteral("gio"), {QStringLiteral("trash"), picture});
    ASSERT_TRUE(gio.waitForFinished(10000));
    ASSERT_EQ(gio.exitCode(), 0) << gio.readAllStandardError().constData();
    ASSERT_FALSE(QFileInfo::exists(picture));

    const TrashRestorer restorer;
    const auto found = restorer.findByOriginalPath(picture);
    ASSERT_EQ(found.size(), 1);
    ASSERT_TRUE(restorer.putBack(found.constFirst().trashedPath, picture).ok);
    EXPECT_EQ(folder.read(QStringLiteral("from gio #1.jpg")), QByteArrayLiteral("gio"));
    EXPECT_FALSE(QFileInfo::exists(found.constFirst().infoPath));
}

TEST(TrashRestorer, CopyBackNeverReplacesAFileOfTheSameName)
{
    TempFolder folder;
    const QString picture = folder.write(QStringLiteral("a.jpg"), QByteArrayLiteral("old"));
    QString error;
    const auto item = FreedesktopTrash().moveToTrash(picture, &error);
    ASSERT_TRUE(item);
    folder.write(QStringLiteral("a.jpg"), QByteArrayLiteral("newcomer"));
    EXPECT_FALSE(TrashRestorer().copyBack(item->trashedPath, picture, &error));
    EXPECT_EQ(folder.read(QStringLiteral("a.jpg")), QByteArrayLiteral("newcomer"));
    EXPECT_TRUE(QFileInfo::exists(item->trashedPath));
    EXPECT_EQ(folder.entries().size(), 1);
}
