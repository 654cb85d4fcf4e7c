// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/FileBytes.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace lumaro::platform {

std::optional<std::string> readFileBytes(const char* path, long long limit)
{
    const int fd = ::open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return std::nullopt;
    std::string content;
    char buffer[64 * 1024];
    for (;;) {
        const long long want = limit < 0
                                   ? (long long)sizeof buffer
                                   : std::min<long long>(sizeof buffer, limit - (long long)content.size());
        if (want <= 0)
            break;
        const ssize_t got = ::read(fd, buffer, size_t(want));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            ::close(fd);
            return std::nullopt;
        }
        if (got == 0)
            break;
        content.append(buffer, size_t(got));
    }
    ::close(fd);
    return content;
}

} // namespace lumaro::platform
