// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/PathKind.h"

#include <sys/stat.h>
#include <unistd.h>

namespace lumaro::platform {

bool PathKind::isFile(const char* path)
{
    struct stat info
    {
    };
    return ::stat(path, &info) == 0 && S_ISREG(info.st_mode);
}

bool PathKind::isDirectory(const char* path)
{
    struct stat info
    {
    };
    return ::stat(path, &info) == 0 && S_ISDIR(info.st_mode);
}

bool PathKind::exists(const char* path)
{
    struct stat info
    {
    };
    return ::lstat(path, &info) == 0;
}

bool PathKind::isPlainFileItself(const char* path)
{
    struct stat info
    {
    };
    return ::lstat(path, &info) == 0 && S_ISREG(info.st_mode);
}

bool PathKind::canList(const char* folder)
{
    return ::access(folder, R_OK | X_OK) == 0;
}

std::optional<std::uint64_t> PathKind::deviceOf(const char* path)
{
    struct stat info
    {
    };
    if (::stat(path, &info) != 0)
        return std::nullopt;
    return std::uint64_t(info.st_dev);
}

} // namespace lumaro::platform
