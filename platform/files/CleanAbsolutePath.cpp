// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/CleanAbsolutePath.h"

#include "platform/files/Utf8Sequence.h"

#include <algorithm>
#include <vector>

#include <unistd.h>

namespace lumaro::platform {

namespace {

std::optional<std::string> workingFolder()
{
    std::string folder(4096, '\0');
    if (!::getcwd(folder.data(), folder.size()))
        return std::nullopt;
    folder.resize(folder.find('\0'));
    return folder;
}

} // namespace

std::optional<std::string> CleanAbsolutePath::of(std::string_view path)
{
    if (path.empty())
        return std::nullopt;
    std::string absolute(path);
    if (path.front() != '/') {
        const auto folder = workingFolder();
        if (!folder)
            return std::nullopt;
        absolute = *folder + "/" + absolute;
    }
    if (!isValidUtf8(absolute))
        return std::nullopt;
    std::vector<std::string_view> parts;
    const std::string_view whole = absolute;
    for (size_t start = 0; start <= whole.size();) {
        const size_t end = std::min(whole.find('/', start), whole.size());
        const std::string_view part = whole.substr(start, end - start);
        start = end + 1;
        if (part.empty() || part == ".")
            continue;
        if (part != "..")
            parts.push_back(part);
        else if (parts.empty())
            return std::nullopt;
        else
            parts.pop_back();
    }
    std::string cleaned;
    for (const std::string_view part : parts)
        cleaned.append("/").append(part);
    return cleaned.empty() ? std::string("/") : cleaned;
}

bool CleanAbsolutePath::isTidy(std::string_view path)
{
    if (path.empty() || !isValidUtf8(path))
        return false;
    for (size_t start = path.front() == '/' ? 1 : 0; start <= path.size();) {
        const size_t end = std::min(path.find('/', start), path.size());
        const std::string_view part = path.substr(start, end - start);
        if (part.empty() || part == "." || part == "..")
            return false;
        start = end + 1;
    }
    return true;
}

} // namespace lumaro::platform
