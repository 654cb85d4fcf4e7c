// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FreedesktopTrash.h"

#include "platform/files/FileNameCodec.h"

#include "platform/FileCopier.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace lumaro::platform {

namespace {

constexpr int kMaxNameAttempts = 1000;

void setError(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

// Creates info/NAME.trashinfo exclusively and writes it whole; false with errno kept when the name is taken.
bool writeInfoExclusively(const QString& infoPath, const QByteArray& content)
{
    const int fd =
        ::open(FileNameCodec::encode(infoPath).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0)
        return false;
    qsizetype written = 0;
    while (written < content.size()) {
        const ssize_t put = ::write(fd, content.constData() + written, size_t(content.size() - written));
        if (put < 0 && errno == EINTR)
            continue;
        if (put < 0) {
            const int saved = errno;
            ::close(fd);
            ::unlink(FileNameCodec::encode(infoPath).constData());
            errno = saved == EEXIST ? EIO : saved;
            return false;
        }
        written += put;
    }
    return ::close(fd) == 0;
}

} // namespace

FreedesktopTrash& FreedesktopTrash::shared()
{
    static FreedesktopTrash trash;
    return trash;
}

FreedesktopTrash::FreedesktopTrash(VolumeLookup lookup)
    : m_lookup(std::move(lookup))
{
}

QByteArray FreedesktopTrash::encodedPath(const QString& absolutePath)
{
    return FileNameCodec::encode(absolutePath).toPercentEncoding("/");
}

QString FreedesktopTrash::trashFor(const QString& path, QString* error) const
{
    const QString home = TrashDirectories::homeTrash();
    if (home.isEmpty()) {
        setError(error, QStringLiteral("no home folder, so no Trash"));
        return {};
    }
    // A name lives on the volume of the folder holding it: a link is trashed as a link, where it sits, even
    // when it leads onto another volume (whose trash it cannot be renamed into).
    const auto fileVolume = m_lookup(QFileInfo(path).absolutePath());
    const auto homeVolume = m_lookup(home);
    if (!fileVolume || !homeVolume) {
        setError(error, QStringLiteral("cannot tell which volume %1 is on").arg(path));
        return {};
    }
    if (fileVolume->device == homeVolume->device)
        return home;
    return TrashDirectories::volumeTrash(fileVolume->topDir);
}

std::optional<TrashedItem> FreedesktopTrash::moveToTrash(const QString& path, QString* error)
{
    const QFileInfo source(path);
    if (!FileNameCodec::exists(path)) {
        setError(error, QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(std::strerror(ENOENT))));
        return std::nullopt;
    }
    const QString absolute = source.absoluteFilePath();
    const QString trashDir = trashFor(absolute, error);
    if (trashDir.isEmpty() || !TrashDirectories::ensure(trashDir, error))
        return std::nullopt;

    const QString topDir = TrashDirectories::topDirOfTrash(trashDir);
    // Relative to the volume's top when the path runs through it; a path that reaches the volume through a
    // link elsewhere is recorded whole, as it was given, rather than climbing out with "../".
    const QString relative = topDir.isEmpty() ? QString() : QDir(topDir).relativeFilePath(absolute);
    const QString recorded =
        relative.isEmpty() || relative.startsWith(QStringLiteral("../")) ? absolute : relative;
    const QByteArray info = QByteArrayLiteral("[Trash Info]\nPath=") + encodedPath(recorded)
        + QByteArrayLiteral("\nDeletionDate=")
        + QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss")).toLatin1()
        + QByteArrayLiteral("\n");

    for (int attempt = 1; attempt <= kMaxNameAttempts; ++attempt) {
        const QString name = TrashDirectories::itemName(source.fileName(), attempt);
        const QString infoPath = trashDir + QStringLiteral("/info/") + name + QStringLiteral(".trashinfo");
        if (!writeInfoExclusively(infoPath, info)) {
            if (errno == EEXIST)
                continue;
            setError(error, QStringLiteral("cannot write %1: %2").arg(infoPath,
                                                                     QString::fromLocal8Bit(std::strerror(errno))));
            return std::nullopt;
        }
        const QString trashedPath = trashDir + QStringLiteral("/files/") + name;
        QString renameError;
        if (renameWithoutReplacing(absolute, trashedPath, &renameError))
            return TrashedItem{trashedPath, infoPath};
        ::unlink(FileNameCodec::encode(infoPath).constData());
        // files/NAME without a record (a trasher that died half-way): leave it, take the next name.
        if (FileNameCodec::exists(trashedPath))
            continue;
        setError(error, QStringLiteral("cannot move %1 to the Trash: %2").arg(path, renameError));
        return std::nullopt;
    }
    setError(error, QStringLiteral("no free name in %1").arg(trashDir));
    return std::nullopt;
}

} // namespace lumaro::platform
