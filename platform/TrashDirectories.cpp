// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TrashDirectories.h"

#include "platform/files/FileNameCodec.h"
#include "platform/files/TrashItem.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

#include <sys/stat.h>
#include <unistd.h>

namespace lumaro::platform {

namespace {

QString uidText()
{
    return QString::number(::getuid());
}

std::optional<struct stat> statOf(const QString& path, bool followLinks = true)
{
    struct stat info {};
    const QByteArray native = FileNameCodec::encode(path);
    const int rc = followLinks ? ::stat(native.constData(), &info) : ::lstat(native.constData(), &info);
    if (rc != 0)
        return std::nullopt;
    return info;
}

bool makeFolder(const QString& path, QString* error)
{
    if (::mkdir(FileNameCodec::encode(path).constData(), 0700) == 0 || errno == EEXIST) {
        if (QFileInfo(path).isDir())
            return true;
        if (error)
            *error = QStringLiteral("%1 exists and is not a folder").arg(path);
        return false;
    }
    if (error)
        *error = QStringLiteral("cannot create %1: %2").arg(path, QString::fromLocal8Bit(std::strerror(errno)));
    return false;
}

} // namespace

// The mount point is the highest folder above the path still on its device: found with a few stat calls,
// where asking the mount table (QStorageInfo) read and parsed it, and listed the disks' labels, on every
// lookup, twice per file trashed. Walked from the resolved path, so that a link into another volume is
// placed on the volume it leads to.
VolumeLookup systemVolumeLookup()
{
    return [](const QString& path) -> std::optional<Volume> {
        QString existing = QFileInfo(path).absoluteFilePath();
        while (!existing.isEmpty() && !QFileInfo::exists(existing) && existing != QStringLiteral("/"))
            existing = QFileInfo(existing).absolutePath();
        const QString resolved = QFileInfo(existing).canonicalFilePath();
        const auto info = resolved.isEmpty() ? std::nullopt : statOf(resolved);
        if (!info)
            return std::nullopt;
        QString top = resolved;
        while (top != QStringLiteral("/")) {
            const QString parent = QFileInfo(top).absolutePath();
            const auto above = statOf(parent);
            if (!above || above->st_dev != info->st_dev)
                break;
            top = parent;
        }
        return Volume{quint64(info->st_dev), top};
    };
}

QString TrashDirectories::homeTrash()
{
    const QString dataHome = qEnvironmentVariable("XDG_DATA_HOME");
    if (!dataHome.isEmpty() && QDir::isAbsolutePath(dataHome))
        return QDir::cleanPath(dataHome + QStringLiteral("/Trash"));
    const QString home = qEnvironmentVariable("HOME");
    if (home.isEmpty() || !QDir::isAbsolutePath(home))
        return {};
    return QDir::cleanPath(home + QStringLiteral("/.local/share/Trash"));
}

QString TrashDirectories::volumeTrash(const QString& topDir)
{
    const QString shared = QDir(topDir).filePath(QStringLiteral(".Trash"));
    const auto info = statOf(shared, false);
    if (info && S_ISDIR(info->st_mode) && (info->st_mode & S_ISVTX))
        return shared + QLatin1Char('/') + uidText();
    return QDir(topDir).filePath(QStringLiteral(".Trash-") + uidText());
}

QStringList TrashDirectories::candidatesFor(const QString& path, const VolumeLookup& lookup)
{
    QStringList candidates;
    const QString home = homeTrash();
    if (!home.isEmpty())
        candidates << home;
    const auto volume = lookup(path);
    if (!volume || volume->topDir.isEmpty())
        return candidates;
    const QDir top(volume->topDir);
    for (const QString& dir : {top.filePath(QStringLiteral(".Trash/") + uidText()),
                               top.filePath(QStringLiteral(".Trash-") + uidText())}) {
        if (!candidates.contains(dir) && QFileInfo(dir).isDir())
            candidates << dir;
    }
    return candidates;
}

QString TrashDirectories::topDirOfTrash(const QString& trashDir)
{
    const QFileInfo info(QDir::cleanPath(trashDir));
    if (info.fileName().startsWith(QStringLiteral(".Trash-")))
        return info.absolutePath();
    const QFileInfo parent(info.absolutePath());
    if (parent.fileName() == QStringLiteral(".Trash"))
        return parent.absolutePath();
    return {};
}

QString TrashDirectories::itemName(const QString& name, int attempt)
{
    const std::string numbered = TrashItem::name(FileNameCodec::encode(name).toStdString(), attempt);
    return FileNameCodec::decode(QByteArray::fromStdString(numbered));
}

bool TrashDirectories::ensure(const QString& trashDir, QString* error)
{
    if (!QDir::isAbsolutePath(trashDir)) {
        if (error)
            *error = QStringLiteral("no trash folder: the home folder is unknown");
        return false;
    }
    if (trashDir == homeTrash()) {
        // The parents of the home trash; each one made here is private to the user, as a data home must be.
        QStringList missing;
        for (QString dir = QFileInfo(trashDir).absolutePath(); !QFileInfo::exists(dir);
             dir = QFileInfo(dir).absolutePath())
            missing.prepend(dir);
        for (const QString& dir : missing) {
            if (!makeFolder(dir, error))
                return false;
        }
    }
    return makeFolder(trashDir, error) && makeFolder(trashDir + QStringLiteral("/files"), error)
        && makeFolder(trashDir + QStringLiteral("/info"), error);
}

} // namespace lumaro::platform
