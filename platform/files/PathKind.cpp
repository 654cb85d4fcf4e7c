// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/PathKind.h"

#include <sys/stat.h>

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

} // namespace lumaro::platform
