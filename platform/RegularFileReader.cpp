// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/RegularFileReader.h"

#include "platform/files/FileNameCodec.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumaro::platform {

namespace {

std::optional<QByteArray> refuse(QString* error, const QString& reason)
{
    if (error)
        *error = reason;
    return std::nullopt;
}

} // namespace

std::optional<QByteArray> RegularFileReader::read(const QString& path, qint64 maxBytes, QString* error)
{
    const int fd = ::open(FileNameCodec::encode(path).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return refuse(error, QString::fromLocal8Bit(std::strerror(errno)));
    struct stat info
    {
    };
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)) {
        ::close(fd);
        return refuse(error, QStringLiteral("not a regular file"));
    }
    if (info.st_size > maxBytes) {
        ::close(fd);
        return refuse(error, QStringLiteral("larger than %1 bytes").arg(maxBytes));
    }
    QByteArray bytes;
    bytes.resize(qsizetype(info.st_size));
    qsizetype filled = 0;
    // The file may grow while it is read: never past the cap.
    while (true) {
        if (filled == bytes.size()) {
            if (bytes.size() >= maxBytes)
                break;
            bytes.resize(std::min<qsizetype>(maxBytes + 1, bytes.size() + 65536));
        }
        const ssize_t got = ::read(fd, bytes.data() + filled, size_t(bytes.size() - filled));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            ::close(fd);
            return refuse(error, QString::fromLocal8Bit(std::strerror(errno)));
        }
        if (got == 0)
            break;
        filled += got;
    }
    ::close(fd);
    if (filled > maxBytes)
        return refuse(error, QStringLiteral("larger than %1 bytes").arg(maxBytes));
    bytes.truncate(filled);
    return bytes;
}

} // namespace lumaro::platform
