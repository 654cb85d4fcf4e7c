// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/ZipWriter.h"

#include "platform/FileCopier.h"
#include "platform/files/FileNameCodec.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <archive.h>
#include <archive_entry.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <memory>

namespace lumaro::platform {

namespace {

using Archive = std::unique_ptr<archive, decltype(&archive_write_free)>;
using Entry = std::unique_ptr<archive_entry, decltype(&archive_entry_free)>;

// Copies one file's bytes into the archive as `name`.
std::optional<QString> addFile(archive* zip, const QString& source, const QString& name)
{
    const int fd = FileNameCodec::openForReading(source);
    if (fd < 0)
        return QStringLiteral("无法读取: ") + source;
    struct stat info
    {
    };
    ::fstat(fd, &info);
    Entry entry(archive_entry_new(), &archive_entry_free);
    archive_entry_set_pathname_utf8(entry.get(), name.toUtf8().constData());
    archive_entry_set_size(entry.get(), info.st_size);
    archive_entry_set_filetype(entry.get(), AE_IFREG);
    archive_entry_set_perm(entry.get(), 0644);
    archive_entry_set_mtime(entry.get(), info.st_mtim.tv_sec, info.st_mtim.tv_nsec);
    std::optional<QString> failure;
    if (archive_write_header(zip, entry.get()) != ARCHIVE_OK)
        failure = QString::fromUtf8(archive_error_string(zip));
    char buffer[1 << 16];
    for (ssize_t got = 0; !failure && (got = ::read(fd, buffer, sizeof buffer)) != 0;) {
        if (got < 0 || archive_write_data(zip, buffer, size_t(got)) != got)
            failure = got < 0 ? QStringLiteral("读取失败: ") + source
                              : QString::fromUtf8(archive_error_string(zip));
    }
    ::close(fd);
    return failure;
}

} // namespace

std::optional<QString> ZipWriter::write(const QString& zipPath, const QList<QPair<QString, QString>>& entries)
{
    if (FileNameCodec::exists(zipPath))
        return QStringLiteral("文件已存在，不会覆盖: ") + zipPath;
    const QFileInfo target(zipPath);
    const QString temporary =
        target.absolutePath() + QStringLiteral("/.") + target.fileName() +
        QStringLiteral(".part-%1").arg(QRandomGenerator::global()->generate(), 8, 16, QLatin1Char('0'));
    Archive zip(archive_write_new(), &archive_write_free);
    archive_write_set_format_zip(zip.get());
    archive_write_set_options(zip.get(), "zip:compression=store");
    if (archive_write_open_filename(zip.get(), FileNameCodec::encode(temporary).constData()) != ARCHIVE_OK)
        return QStringLiteral("无法写入: ") + QString::fromUtf8(archive_error_string(zip.get()));
    std::optional<QString> failure;
    for (const auto& [source, name] : entries) {
        if ((failure = addFile(zip.get(), source, name)))
            break;
    }
    if (!failure && archive_write_close(zip.get()) != ARCHIVE_OK)
        failure = QString::fromUtf8(archive_error_string(zip.get()));
    zip.reset();
    QString error;
    if (!failure && !renameWithoutReplacing(temporary, zipPath, &error))
        failure = error;
    if (failure)
        ::unlink(FileNameCodec::encode(temporary).constData());
    return failure;
}

} // namespace lumaro::platform
