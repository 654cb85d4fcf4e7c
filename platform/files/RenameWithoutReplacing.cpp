// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/RenameWithoutReplacing.h"

#include <cerrno>
#include <cstdio>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumaro::platform {

bool renameBytesWithoutReplacing(const char* from, const char* to)
{
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS && errno != ENOTSUP)
        return false;
    // No RENAME_NOREPLACE here: link() refuses an existing target just as atomically.
    if (::link(from, to) == 0) {
        ::unlink(from);
        return true;
    }
    if (errno == EEXIST)
        return false;
    // FAT and exFAT have neither: check, then rename. The window between the two is the best these allow.
    struct stat info
    {
    };
    if (::lstat(to, &info) == 0) {
        errno = EEXIST;
        return false;
    }
    return ::rename(from, to) == 0;
}

} // namespace lumaro::platform
