// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FolderFiles.h"

#include "platform/files/FileNameCodec.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace lumaro::platform {

namespace {

QString systemError(int code)
{
    return QString::fromLocal8Bit(std::strerror(code));
}

struct RawEntry
{
    QByteArray name;
    FolderFile file;
};

// Hands the folder's descriptor and each entry but "." and ".." to `visit`; false, with `error` set, when the
// folder cannot be opened or read to its end.
template <typename Visit>
bool eachEntry(const QString& folder, QString* error, Visit visit)
{
    std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir(FileNameCodec::encode(folder).constData()), &::closedir);
    if (!directory) {
        if (error)
            *error = systemError(errno);
        return false;
    }
    const int fd = ::dirfd(directory.get());
    for (;;) {
        errno = 0; // readdir reports an error only through errno; the visitor's stat calls may have set it
        const dirent* entry = ::readdir(directory.get());
        if (!entry)
            break;
        if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
            visit(fd, *entry);
    }
    if (errno != 0) {
        if (error)
            *error = systemError(errno);
        return false;
    }
    return true;
}

} // namespace

std::optional<std::vector<FolderFile>> FolderFiles::list(const QString& folder, QString* error)
{
    std::vector<RawEntry> entries;
    const bool read = eachEntry(folder, error, [&](int fd, const dirent& entry) {
        if (entry.d_type == DT_DIR)
            return;
        struct stat info {};
        RawEntry raw{QByteArray(entry.d_name), {}};
        if (::fstatat(fd, entry.d_name, &info, 0) != 0) {
            if (entry.d_type != DT_REG)
                return; // a dangling link or a name gone meanwhile: not a file of this folder
            raw.file.sizeKnown = false;
            raw.file.sizeError = systemError(errno);
        } else if (!S_ISREG(info.st_mode)) {
            return;
        } else {
            raw.file.size = qint64(info.st_size);
        }
        entries.push_back(std::move(raw));
    });
    if (!read)
        return std::nullopt;
    std::sort(entries.begin(), entries.end(), [](const RawEntry& a, const RawEntry& b) { return a.name < b.name; });
    std::vector<FolderFile> files;
    files.reserve(entries.size());
    for (RawEntry& entry : entries) {
        entry.file.name = FileNameCodec::decode(entry.name);
        files.push_back(std::move(entry.file));
    }
    return files;
}

std::optional<std::vector<FolderEntry>> FolderFiles::entries(const QString& folder, QString* error)
{
    std::vector<FolderEntry> found;
    const bool read = eachEntry(folder, error, [&](int fd, const dirent& entry) {
        FolderEntry item;
        item.name = FileNameCodec::decode(QByteArray(entry.d_name));
        struct stat info {};
        if (::fstatat(fd, entry.d_name, &info, AT_SYMLINK_NOFOLLOW) == 0) {
            item.kind = S_ISREG(info.st_mode)   ? FolderEntry::Kind::file
                        : S_ISDIR(info.st_mode) ? FolderEntry::Kind::folder
                        : S_ISLNK(info.st_mode) ? FolderEntry::Kind::link
                                                : FolderEntry::Kind::other;
            item.size = qint64(info.st_size);
            item.modifiedMs = qint64(info.st_mtim.tv_sec) * 1000 + info.st_mtim.tv_nsec / 1'000'000;
        }
        found.push_back(std::move(item));
    });
    if (!read)
        return std::nullopt;
    return found;
}

std::optional<qint64> FolderFiles::sizeOf(const QString& path, QString* error)
{
    struct stat info {};
    if (::stat(FileNameCodec::encode(path).constData(), &info) != 0) {
        if (error)
            *error = systemError(errno);
        return std::nullopt;
    }
    return qint64(info.st_size);
}

} // namespace lumaro::platform
