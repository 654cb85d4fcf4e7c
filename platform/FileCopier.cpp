// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileCopier.h"

#include "platform/files/FileNameCodec.h"
#include "platform/files/FileRewrite.h"
#include "platform/files/RenameWithoutReplacing.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumaro::platform {

namespace {

QString systemError(int code)
{
    return QString::fromLocal8Bit(std::strerror(code));
}

void setError(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

class FileDescriptor
{
public:
    explicit FileDescriptor(int fd) : m_fd(fd) {}
    ~FileDescriptor()
    {
        if (m_fd >= 0)
            ::close(m_fd);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    int get() const { return m_fd; }
    bool close()
    {
        const int fd = m_fd;
        m_fd = -1;
        return ::close(fd) == 0;
    }

private:
    int m_fd;
};

bool readWrite(int from, int to, qint64 copied, qint64 total, const CopyOptions& options, QString* error)
{
    std::vector<char> buffer(1 << 20);
    for (;;) {
        const ssize_t got = ::read(from, buffer.data(), buffer.size());
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            setError(error, systemError(errno));
            return false;
        }
        if (got == 0)
            return true;
        for (ssize_t written = 0; written < got;) {
            const ssize_t put = ::write(to, buffer.data() + written, size_t(got - written));
            if (put < 0 && errno == EINTR)
                continue;
            if (put < 0) {
                setError(error, systemError(errno));
                return false;
            }
            written += put;
        }
        copied += got;
        if (options.progress && !options.progress(copied, total)) {
            setError(error, QStringLiteral("copy abandoned"));
            return false;
        }
    }
}

// copy_file_range lets the kernel move the bytes (a reflink or server-side copy where the file system offers
// one) without a round trip through user space. Where it cannot serve this pair of files (another file system
// type, an old kernel, a FUSE mount) it fails before copying anything, and read/write carries on from where
// it stopped.
bool copyBytes(int from, int to, qint64 total, const CopyOptions& options, QString* error)
{
    // The card is read once, front to back: ask for a generous read-ahead.
    ::posix_fadvise(from, 0, 0, POSIX_FADV_SEQUENTIAL);
    constexpr size_t chunk = 2 << 20; // progress (and a cancel) is seen at least every 2 MB
    qint64 copied = 0;
    for (;;) {
        const ssize_t moved = ::copy_file_range(from, nullptr, to, nullptr, chunk, 0);
        if (moved < 0 && errno == EINTR)
            continue;
        if (moved < 0) {
            if (errno == EXDEV || errno == ENOSYS || errno == EINVAL || errno == EOPNOTSUPP ||
                errno == EBADF || errno == EPERM)
                return readWrite(from, to, copied, total, options, error);
            setError(error, systemError(errno));
            return false;
        }
        if (moved == 0)
            return true;
        copied += moved;
        if (options.progress && !options.progress(copied, total)) {
            setError(error, QStringLiteral("copy abandoned"));
            return false;
        }
    }
}

// Writes a complete copy of `source` into a hidden temporary file beside `destination`; returns its path.
std::optional<QString> writeTemporaryCopy(const QString& source, const QString& destination,
                                          const CopyOptions& options, QString* error)
{
    // Non-blocking, so that a pipe with no writer is refused below instead of holding the batch forever.
    FileDescriptor in(::open(FileNameCodec::encode(source).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat info {};
    if (in.get() < 0 || ::fstat(in.get(), &info) != 0) {
        setError(error, systemError(errno));
        return std::nullopt;
    }
    if (!S_ISREG(info.st_mode)) {
        setError(error, QStringLiteral("not a regular file"));
        return std::nullopt;
    }
    ::fcntl(in.get(), F_SETFL, ::fcntl(in.get(), F_GETFL) & ~O_NONBLOCK); // a FUSE mount may honour it
    QByteArray pattern =
        FileNameCodec::encode(QFileInfo(destination).absolutePath() + QStringLiteral("/.lumaro-copy-XXXXXX"));
    FileDescriptor out(::mkostemp(pattern.data(), O_CLOEXEC));
    if (out.get() < 0) {
        setError(error, systemError(errno));
        return std::nullopt;
    }
    const QString temporary = FileNameCodec::decode(pattern);
    const auto abandon = [&temporary] {
        ::unlink(FileNameCodec::encode(temporary).constData());
        return std::nullopt;
    };
    if (!copyBytes(in.get(), out.get(), qint64(info.st_size), options, error))
        return abandon();
    ::fchmod(out.get(), info.st_mode & 0777);
    const std::array<timespec, 2> times{info.st_atim, info.st_mtim};
    ::futimens(out.get(), times.data());
    if (options.syncToDisk && ::fdatasync(out.get()) != 0) {
        setError(error, systemError(errno));
        return abandon();
    }
    if (!out.close()) {
        setError(error, systemError(errno));
        return abandon();
    }
    FileCopier::copyUserAttributes(source, temporary);
    return temporary;
}

} // namespace

bool renameWithoutReplacing(const QString& from, const QString& to, QString* error)
{
    const QByteArray source = FileNameCodec::encode(from);
    if (renameBytesWithoutReplacing(source.constData(), FileNameCodec::encode(to).constData()))
        return true;
    setError(error, systemError(errno));
    return false;
}

QString FileCopier::freeName(const QString& folder, const QString& name)
{
    const QDir dir(folder);
    if (!FileNameCodec::exists(dir.filePath(name)))
        return name;
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const QString stem = dot > 0 ? name.left(dot) : name;
    const QString suffix = dot > 0 ? name.mid(dot) : QString();
    for (int n = 1;; ++n) {
        const QString candidate = QStringLiteral("%1_%2%3").arg(stem).arg(n).arg(suffix);
        if (!FileNameCodec::exists(dir.filePath(candidate)))
            return candidate;
    }
}

std::optional<QString> FileCopier::copyWithoutOverwriting(const QString& source, const QString& folder,
                                                          const QString& name, QString* error,
                                                          const CopyOptions& options)
{
    const auto temporary = writeTemporaryCopy(source, QDir(folder).filePath(name), options, error);
    if (!temporary)
        return std::nullopt;
    // Another writer may take the free name between the check and the rename; then the next one is tried.
    for (int attempt = 0; attempt < 100; ++attempt) {
        const QString destination = QDir(folder).filePath(freeName(folder, name));
        QString renameError;
        if (renameWithoutReplacing(*temporary, destination, &renameError))
            return destination;
        if (FileNameCodec::exists(destination))
            continue;
        setError(error, renameError);
        break;
    }
    ::unlink(FileNameCodec::encode(*temporary).constData());
    return std::nullopt;
}

bool FileCopier::copyReplacing(const QString& source, const QString& destination, QString* error,
                               const CopyOptions& options)
{
    const auto temporary = writeTemporaryCopy(source, destination, options, error);
    if (!temporary)
        return false;
    if (::rename(FileNameCodec::encode(*temporary).constData(),
                 FileNameCodec::encode(destination).constData()) != 0) {
        setError(error, systemError(errno));
        ::unlink(FileNameCodec::encode(*temporary).constData());
        return false;
    }
    return true;
}

void FileCopier::readAheadSoon(const QString& path)
{
    constexpr off_t readAheadBytes = 64 << 20;
    FileDescriptor file(::open(FileNameCodec::encode(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.get() >= 0)
        ::posix_fadvise(file.get(), 0, readAheadBytes, POSIX_FADV_WILLNEED);
}

int FileCopier::removePartialCopies(const QString& folder)
{
    int removed = 0;
    const QStringList partial =
        QDir(folder).entryList({QStringLiteral(".lumaro-copy-*")}, QDir::Files | QDir::Hidden);
    for (const QString& name : partial)
        removed += QFile::remove(QDir(folder).filePath(name)) ? 1 : 0;
    return removed;
}

bool FileCopier::copyUserAttributes(const QString& source, const QString& destination)
{
    return FileRewrite::copyUserAttributes(FileNameCodec::encode(source).constData(),
                                           FileNameCodec::encode(destination).constData());
}

} // namespace lumaro::platform
