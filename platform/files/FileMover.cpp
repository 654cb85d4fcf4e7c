// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/FileMover.h"

#include "platform/FileCopier.h"
#include "platform/files/FileNameCodec.h"

#include <QFileInfo>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdio.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumaro::platform {

namespace {

std::optional<dev_t> deviceOf(const QString& path)
{
    struct stat info
    {
    };
    if (::lstat(FileNameCodec::encode(path).constData(), &info) != 0)
        return std::nullopt;
    return info.st_dev;
}

void setError(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

} // namespace

RenameFunction systemRenameWithoutReplacing()
{
    return [](const QString& from, const QString& to) {
        RenameResult result;
        const QByteArray source = FileNameCodec::encode(from);
        const QByteArray target = FileNameCodec::encode(to);
        if (::renameat2(AT_FDCWD, source.constData(), AT_FDCWD, target.constData(), RENAME_NOREPLACE) == 0) {
            result.ok = true;
            return result;
        }
        const int code = errno;
        if (code == EINVAL || code == ENOSYS || code == ENOTSUP) {
            result.ok = renameWithoutReplacing(from, to, &result.error);
            if (!result.ok) {
                result.targetExists = FileNameCodec::exists(to);
                result.crossDevice =
                    !result.targetExists && deviceOf(from) != deviceOf(QFileInfo(to).absolutePath());
            }
            return result;
        }
        result.crossDevice = code == EXDEV;
        result.targetExists = code == EEXIST;
        result.error = QString::fromLocal8Bit(std::strerror(code));
        return result;
    };
}

FileMover::FileMover(RenameFunction rename) : m_rename(std::move(rename)) {}

RenameResult FileMover::move(const QString& from, const QString& to) const
{
    RenameResult result = m_rename(from, to);
    if (result.ok || !result.crossDevice)
        return result;
    result.ok = copyThenRemove(from, to, &result.error);
    result.targetExists = !result.ok && FileNameCodec::exists(to);
    return result;
}

bool FileMover::copyThenRemove(const QString& from, const QString& to, QString* error)
{
    if (FileNameCodec::exists(to)) {
        setError(error, QStringLiteral("%1 already exists").arg(to));
        return false;
    }
    const QFileInfo target(to);
    const auto copied =
        FileCopier::copyWithoutOverwriting(from, target.absolutePath(), target.fileName(), error);
    if (!copied)
        return false;
    if (QFileInfo(*copied).absoluteFilePath() != target.absoluteFilePath()) {
        // The name was taken while we copied: our copy is surplus, the original stays.
        ::unlink(FileNameCodec::encode(*copied).constData());
        setError(error, QStringLiteral("%1 already exists").arg(to));
        return false;
    }
    // The complete copy is in place; only now does the original go. When it cannot (a read-only card), the
    // picture is in both places, which loses nothing.
    ::unlink(FileNameCodec::encode(from).constData());
    return true;
}

} // namespace lumaro::platform
