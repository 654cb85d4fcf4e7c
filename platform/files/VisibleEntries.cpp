// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/VisibleEntries.h"

#include <algorithm>
#include <cerrno>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumaro::platform {

namespace {

VisibleEntry::Kind kindFromStat(int folderFd, const char* name)
{
    struct stat info
    {
    };
    if (::fstatat(folderFd, name, &info, 0) != 0)
        return VisibleEntry::Kind::other; // a dangling link, or gone meanwhile
    if (S_ISREG(info.st_mode))
        return VisibleEntry::Kind::file;
    if (S_ISDIR(info.st_mode))
        return VisibleEntry::Kind::directory;
    return VisibleEntry::Kind::other;
}

VisibleEntry::Kind kindOf(int folderFd, const dirent* entry)
{
    switch (entry->d_type) {
    case DT_REG:
        return VisibleEntry::Kind::file;
    case DT_DIR:
        return VisibleEntry::Kind::directory;
    case DT_LNK:
    case DT_UNKNOWN:
        return kindFromStat(folderFd, entry->d_name);
    default:
        return VisibleEntry::Kind::other;
    }
}

// The whole file when it is a plain one of at most `maxBytes`; it may grow while it is read: never past the
// cap.
std::optional<std::string> readCapped(int fd, long long maxBytes)
{
    struct stat info
    {
    };
    if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode) || info.st_size > maxBytes)
        return std::nullopt;
    std::string bytes(size_t(info.st_size), '\0');
    size_t filled = 0;
    for (;;) {
        if (filled == bytes.size()) {
            if (bytes.size() >= size_t(maxBytes))
                break;
            bytes.resize(std::min(size_t(maxBytes) + 1, bytes.size() + 65536));
        }
        const ssize_t got = ::read(fd, bytes.data() + filled, bytes.size() - filled);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        filled += size_t(got);
    }
    if (filled > size_t(maxBytes))
        return std::nullopt;
    bytes.resize(filled);
    return bytes;
}

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

} // namespace

std::vector<std::string> VisibleEntries::parseHiddenList(std::string_view content)
{
    std::vector<std::string> names;
    while (!content.empty()) {
        const size_t end = std::min(content.find('\n'), content.size());
        std::string_view line = content.substr(0, end);
        content.remove_prefix(std::min(end + 1, content.size()));
        while (!line.empty() && isBlank(line.front()))
            line.remove_prefix(1);
        while (!line.empty() && isBlank(line.back()))
            line.remove_suffix(1);
        if (!line.empty())
            names.emplace_back(line);
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

std::vector<std::string> VisibleEntries::hiddenNames(int folderFd)
{
    // O_NONBLOCK: opening a FIFO someone named ".hidden" must not wait for a writer.
    const int fd = ::openat(folderFd, ".hidden", O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0)
        return {};
    const std::optional<std::string> content = readCapped(fd, maxHiddenListBytes);
    ::close(fd);
    return content ? parseHiddenList(*content) : std::vector<std::string>();
}

bool VisibleEntries::isListableFolder(const char* folder)
{
    struct stat info
    {
    };
    return ::stat(folder, &info) == 0 && S_ISDIR(info.st_mode) && ::access(folder, R_OK | X_OK) == 0;
}

std::optional<std::vector<VisibleEntry>> VisibleEntries::read(const char* folder, int* errorNumber)
{
    std::unique_ptr<DIR, int (*)(DIR*)> directory(::opendir(folder), &::closedir);
    if (!directory) {
        if (errorNumber)
            *errorNumber = errno;
        return std::nullopt;
    }
    const int fd = ::dirfd(directory.get());
    const std::vector<std::string> hidden = hiddenNames(fd);
    std::vector<VisibleEntry> entries;
    for (;;) {
        errno = 0; // readdir reports an error only through errno; the stat calls below may have set it
        const dirent* entry = ::readdir(directory.get());
        if (!entry)
            break;
        if (entry->d_name[0] == '.')
            continue;
        std::string name(entry->d_name);
        if (!hidden.empty() && std::binary_search(hidden.begin(), hidden.end(), name))
            continue;
        const VisibleEntry::Kind kind = kindOf(fd, entry);
        entries.push_back({std::move(name), kind});
    }
    if (errno != 0) {
        if (errorNumber)
            *errorNumber = errno;
        return std::nullopt;
    }
    return entries;
}

} // namespace lumaro::platform
