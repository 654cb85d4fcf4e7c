// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileReplacer.h"

#include "platform/files/FileNameCodec.h"

#include "platform/FileCopier.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumaro::platform {

namespace {

bool fail(QString* error, int code, const QByteArray& temporary = {})
{
    if (!temporary.isEmpty())
        ::unlink(temporary.constData());
    if (error)
        *error = QString::fromLocal8Bit(std::strerror(code));
    return false;
}

// A complete, synced temporary file beside `path` holding `contents` with permission bits `mode`; its
// encoded name, or empty after setting `error`.
QByteArray writeTemporary(const QString& path, const QByteArray& contents, mode_t mode, QString* error)
{
    QByteArray temporary =
        FileNameCodec::encode(QFileInfo(path).absolutePath() + QStringLiteral("/.lumaro-rewrite-XXXXXX"));
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0) {
        fail(error, errno);
        return {};
    }
    for (qsizetype written = 0; written < contents.size();) {
        const ssize_t put = ::write(fd, contents.constData() + written, size_t(contents.size() - written));
        if (put < 0 && errno == EINTR)
            continue;
        if (put < 0) {
            const int code = errno;
            ::close(fd);
            fail(error, code, temporary);
            return {};
        }
        written += put;
    }
    ::fchmod(fd, mode & 07777);
    const bool synced = ::fsync(fd) == 0;
    const int syncError = errno;
    if (::close(fd) != 0 || !synced) {
        fail(error, synced ? errno : syncError, temporary);
        return {};
    }
    return temporary;
}

} // namespace

bool FileReplacer::replaceContents(const QString& path, const QByteArray& contents, QString* error)
{
    const QByteArray target = FileNameCodec::encode(path);
    struct stat original
    {
    };
    if (::stat(target.constData(), &original) != 0)
        return fail(error, errno);
    const QByteArray temporary = writeTemporary(path, contents, original.st_mode, error);
    if (temporary.isEmpty())
        return false;
    FileCopier::copyUserAttributes(path, FileNameCodec::decode(temporary));
    if (::rename(temporary.constData(), target.constData()) != 0)
        return fail(error, errno, temporary);
    return true;
}

bool FileReplacer::createFile(const QString& path, const QByteArray& contents, QString* error)
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    const QByteArray temporary = writeTemporary(path, contents, 0666 & ~mask, error);
    if (temporary.isEmpty())
        return false;
    // link() never replaces: a file that appeared under the name meanwhile is kept and this one dropped.
    if (::link(temporary.constData(), FileNameCodec::encode(path).constData()) != 0)
        return fail(error, errno, temporary);
    ::unlink(temporary.constData());
    return true;
}

} // namespace lumaro::platform
