// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DirectoryLister.h"

#include "platform/files/FileNameCodec.h"
#include "platform/files/HiddenList.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace lumaro::platform {

namespace {

DirectoryEntry::Kind kindFromStat(int directoryFd, const char* name)
{
    struct stat info {};
    if (::fstatat(directoryFd, name, &info, 0) != 0)
        return DirectoryEntry::Kind::other; // a dangling link, or gone meanwhile
    if (S_ISREG(info.st_mode))
        return DirectoryEntry::Kind::file;
    if (S_ISDIR(info.st_mode))
        return DirectoryEntry::Kind::directory;
    return DirectoryEntry::Kind::other;
}

DirectoryEntry::Kind kindOf(int directoryFd, const dirent* entry)
{
    switch (entry->d_type) {
    case DT_REG:
        return DirectoryEntry::Kind::file;
    case DT_DIR:
        return DirectoryEntry::Kind::directory;
    case DT_LNK:
    case DT_UNKNOWN:
        return kindFromStat(directoryFd, entry->d_name);
    default:
        return DirectoryEntry::Kind::other;
    }
}

} // namespace

QString DirectoryEntry::name() const
{
    return FileNameCodec::decode(nativeName);
}

std::optional<std::vector<DirectoryEntry>> DirectoryLister::listVisible(const QString& folder, QString* error)
{
    const QByteArray native = FileNameCodec::encode(folder);
    std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir(native.constData()), &::closedir);
    if (!directory) {
        if (error)
            *error = QString::fromLocal8Bit(std::strerror(errno));
        return std::nullopt;
    }
    const std::vector<QByteArray> hidden = HiddenList::names(folder);
    const int fd = ::dirfd(directory.get());
    std::vector<DirectoryEntry> entries;
    for (;;) {
        errno = 0; // readdir reports an error only through errno; the stat calls below may have set it
        const dirent* entry = ::readdir(directory.get());
        if (!entry)
            break;
        if (entry->d_name[0] == '.')
            continue;
        QByteArray name(entry->d_name);
        if (!hidden.empty() && std::binary_search(hidden.begin(), hidden.end(), name))
            continue;
        entries.push_back({std::move(name), kindOf(fd, entry)});
    }
    if (errno != 0) {
        if (error)
            *error = QString::fromLocal8Bit(std::strerror(errno));
        return std::nullopt;
    }
    return entries;
}

} // namespace lumaro::platform
