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

} // namespace

bool FileReplacer::replaceContents(const QString& path, const QByteArray& contents, QString* error)
{
    const QByteArray target = FileNameCodec::encode(path);
    struct stat original {};
    if (::stat(target.constData(), &original) != 0)
        return fail(error, errno);
    QByteArray temporary =
        FileNameCodec::encode(QFileInfo(path).absolutePath() + QStringLiteral("/.lumaro-rewrite-XXXXXX"));
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0)
        return fail(error, errno);
    for (qsizetype written = 0; written < contents.size();) {
        const ssize_t put = ::write(fd, contents.constData() + written, size_t(contents.size() - written));
        if (put < 0 && errno == EINTR)
            continue;
        if (put < 0) {
            const int code = errno;
            ::close(fd);
            return fail(error, code, temporary);
        }
        written += put;
    }
    ::fchmod(fd, original.st_mode & 07777);
    const bool synced = ::fsync(fd) == 0;
    const int syncError = errno;
    if (::close(fd) != 0 || !synced)
        return fail(error, synced ? errno : syncError, temporary);
    FileCopier::copyUserAttributes(path, FileNameCodec::decode(temporary));
    if (::rename(temporary.constData(), target.constData()) != 0)
        return fail(error, errno, temporary);
    return true;
}

} // namespace lumaro::platform
