// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TrashRestorer.h"

#include "platform/files/FileMover.h"
#include "platform/files/FileNameCodec.h"
#include "platform/files/TrashItem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumaro::platform {

namespace {

void setError(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

bool isSafeName(const QString& name)
{
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && name != QStringLiteral(".") &&
           name != QStringLiteral("..");
}

bool exists(const QString& path)
{
    return FileNameCodec::exists(path);
}

QString infoPathOf(const QString& trashedPath)
{
    const QFileInfo item(trashedPath);
    const QString trashDir = QFileInfo(item.absolutePath()).absolutePath();
    return trashDir + QStringLiteral("/info/") + item.fileName() + QStringLiteral(".trashinfo");
}

void removeInfo(const QString& trashedPath)
{
    ::unlink(FileNameCodec::encode(infoPathOf(trashedPath)).constData());
}

} // namespace

TrashRestorer::TrashRestorer(RenameFunction rename, VolumeLookup lookup)
    : m_rename(std::move(rename)), m_lookup(std::move(lookup))
{
}

std::optional<TrashEntry> TrashRestorer::readInfo(const QString& infoPath, const QString& trashDir)
{
    bool read = false;
    const QList<QByteArray> lines = FileNameCodec::readAll(infoPath, &read, 64 * 1024).split('\n');
    if (!read)
        return std::nullopt;
    if (lines.isEmpty() || lines.constFirst().trimmed() != "[Trash Info]")
        return std::nullopt;
    TrashEntry entry;
    entry.infoPath = infoPath;
    const QString name = QFileInfo(infoPath).completeBaseName();
    entry.trashedPath = isSafeName(name) ? trashDir + QStringLiteral("/files/") + name : QString();
    for (const QByteArray& line : lines) {
        if (line.startsWith("Path=")) {
            const QString path =
                FileNameCodec::decode(QByteArray::fromPercentEncoding(line.mid(5).trimmed()));
            const QString topDir = TrashDirectories::topDirOfTrash(trashDir);
            entry.originalPath = QDir::isAbsolutePath(path) || topDir.isEmpty()
                                     ? QDir::cleanPath(path)
                                     : QDir::cleanPath(QDir(topDir).filePath(path));
        } else if (line.startsWith("DeletionDate=")) {
            entry.deletionDate =
                QDateTime::fromString(QString::fromLatin1(line.mid(13).trimmed()), Qt::ISODate);
        }
    }
    if (entry.originalPath.isEmpty() || entry.trashedPath.isEmpty())
        return std::nullopt;
    return entry;
}

TrashEntry TrashRestorer::entryFor(const QString& trashedPath)
{
    const QString trashDir = QFileInfo(QFileInfo(trashedPath).absolutePath()).absolutePath();
    const QString infoPath = infoPathOf(trashedPath);
    if (auto entry = readInfo(infoPath, trashDir))
        return *entry;
    return TrashEntry{trashedPath, infoPath, {}, {}};
}

RenameResult TrashRestorer::putBack(const QString& trashedPath, const QString& target) const
{
    RenameResult result = m_rename(trashedPath, target);
    if (result.ok)
        removeInfo(trashedPath);
    return result;
}

const QSet<QString>& TrashRecords::recordNames(const QString& trashDir)
{
    auto known = m_names.find(trashDir);
    if (known == m_names.end()) {
        QSet<QString> names;
        for (const std::string& name :
             TrashItem::recordNames(FileNameCodec::encode(trashDir).toStdString()).value_or(std::vector<std::string>()))
            names.insert(FileNameCodec::decode(QByteArray::fromStdString(name)));
        known = m_names.insert(trashDir, names);
    }
    return *known;
}

bool TrashRecords::isListed(const QString& trashDir, const QString& recordName)
{
    return recordNames(trashDir).contains(recordName);
}

QList<TrashEntry> TrashRecords::naming(const QString& trashDir, const QString& originalPath)
{
    const QString suffix = QFileInfo(originalPath).suffix().toLower();
    const QString key = trashDir + QLatin1Char('\n') + suffix;
    auto known = m_byPath.find(key);
    if (known == m_byPath.end()) {
        QMultiHash<QString, TrashEntry> byPath;
        const QString info = trashDir + QStringLiteral("/info/");
        for (const QString& name : recordNames(trashDir)) {
            const QString item = name.chopped(int(qstrlen(".trashinfo")));
            if (!suffix.isEmpty() && QFileInfo(item).suffix().toLower() != suffix)
                continue;
            if (const auto entry = TrashRestorer::readInfo(info + name, trashDir))
                byPath.insert(entry->originalPath, *entry);
        }
        known = m_byPath.insert(key, byPath);
    }
    return known->values(originalPath);
}

QStringList TrashRecords::trashesFor(const QString& folder, const VolumeLookup& lookup)
{
    auto known = m_trashesByFolder.find(folder);
    if (known == m_trashesByFolder.end())
        known = m_trashesByFolder.insert(folder, TrashDirectories::candidatesFor(folder, lookup));
    return *known;
}

QList<TrashEntry> TrashRestorer::findByOriginalPath(const QString& originalPath, TrashRecords* records) const
{
    const QString wanted = QDir::cleanPath(QFileInfo(originalPath).absoluteFilePath());
    const QString name = QFileInfo(wanted).fileName();
    if (!isSafeName(name))
        return {};
    TrashRecords own;
    TrashRecords& batch = records ? *records : own;
    const QStringList trashes = batch.trashesFor(QFileInfo(wanted).absolutePath(), m_lookup);
    QList<TrashEntry> found;
    // Trashers name an item after the file and number the clashes; restores leave gaps in the numbers, so the
    // probe goes on past a few missing ones.
    constexpr int kMissesBeforeGivingUp = 16;
    for (const QString& trashDir : trashes) {
        int misses = 0;
        for (int attempt = 1; misses < kMissesBeforeGivingUp && attempt <= 1000; ++attempt) {
            const QString recordName =
                TrashDirectories::itemName(name, attempt) + QStringLiteral(".trashinfo");
            if (records && !records->isListed(trashDir, recordName)) {
                ++misses;
                continue;
            }
            const auto entry = readInfo(trashDir + QStringLiteral("/info/") + recordName, trashDir);
            if (!entry) {
                ++misses;
                continue;
            }
            misses = 0;
            if (entry->originalPath == wanted && exists(entry->trashedPath))
                found << *entry;
        }
    }
    if (found.isEmpty()) {
        // Named otherwise ("IMG 7 (2).jpg" by other trashers): the records of its extension, once a batch.
        for (const QString& trashDir : trashes) {
            for (const TrashEntry& entry : batch.naming(trashDir, wanted)) {
                if (exists(entry.trashedPath))
                    found << entry;
            }
        }
    }
    std::stable_sort(found.begin(), found.end(), [](const TrashEntry& a, const TrashEntry& b) {
        return a.deletionDate > b.deletionDate;
    });
    return found;
}

bool TrashRestorer::isItemOf(const QString& trashedPath, const QString& originalPath)
{
    const TrashEntry entry = entryFor(trashedPath);
    return !entry.originalPath.isEmpty() &&
           entry.originalPath == QDir::cleanPath(QFileInfo(originalPath).absoluteFilePath());
}

bool TrashRestorer::copyBack(const QString& trashedPath, const QString& target, QString* error) const
{
    if (!FileMover::copyThenRemove(trashedPath, target, error))
        return false;
    removeInfo(trashedPath);
    return true;
}

bool TrashRestorer::isGioAvailable()
{
    return !QStandardPaths::findExecutable(QStringLiteral("gio")).isEmpty();
}

bool TrashRestorer::gioRestore(const QString& originalPath, QString* error, int timeoutMs)
{
    if (!isGioAvailable()) {
        setError(error, QStringLiteral("gio is not installed"));
        return false;
    }
    QProcess list;
    list.start(QStringLiteral("gio"), {QStringLiteral("trash"), QStringLiteral("--list")});
    if (!list.waitForFinished(timeoutMs) || list.exitCode() != 0) {
        setError(error, QStringLiteral("gio trash --list failed"));
        return false;
    }
    const QString wanted = QDir::cleanPath(originalPath);
    QString uri;
    for (const QByteArray& line : list.readAllStandardOutput().split('\n')) {
        const qsizetype tab = line.indexOf('\t');
        if (tab > 0 && QDir::cleanPath(FileNameCodec::decode(line.mid(tab + 1))) == wanted)
            uri = QString::fromUtf8(line.left(tab));
    }
    if (uri.isEmpty()) {
        setError(error, QStringLiteral("gio finds no trashed item from %1").arg(originalPath));
        return false;
    }
    QProcess restore;
    restore.start(QStringLiteral("gio"), {QStringLiteral("trash"), QStringLiteral("--restore"), uri});
    if (!restore.waitForFinished(timeoutMs) || restore.exitCode() != 0 || !exists(originalPath)) {
        setError(error, QString::fromLocal8Bit(restore.readAllStandardError()).trimmed());
        return false;
    }
    return true;
}

} // namespace lumaro::platform
