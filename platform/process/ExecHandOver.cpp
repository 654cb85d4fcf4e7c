// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/process/ExecHandOver.h"

#include <cerrno>
#include <climits>
#include <vector>

#include <unistd.h>

namespace lumaro::platform {

int execInPlace(const char* program, int argc, char* argv[])
{
    std::string path(program);
    std::vector<char*> words{path.data()};
    for (int i = 1; i < argc; ++i)
        words.push_back(argv[i]);
    words.push_back(nullptr);
    ::execv(path.c_str(), words.data());
    return errno;
}

std::string ownExecutableFolder()
{
    char buffer[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", buffer, sizeof buffer);
    if (length <= 0 || length == static_cast<ssize_t>(sizeof buffer))
        return {};
    std::string path(buffer, size_t(length));
    path.resize(path.rfind('/') == std::string::npos ? 0 : path.rfind('/'));
    return path;
}

} // namespace lumaro::platform
