// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/FileRewrite.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace lumaro::platform {

namespace {

std::string folderOf(const std::string& path)
{
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool writeEverything(int fd, std::string_view contents)
{
    while (!contents.empty()) {
        const ssize_t put = ::write(fd, contents.data(), contents.size());
        if (put < 0 && errno == EINTR)
            continue;
        if (put < 0)
            return false;
        contents.remove_prefix(std::size_t(put));
    }
    return true;
}

} // namespace

FileRewrite::FileRewrite(int error) : m_error(error) {}

FileRewrite::FileRewrite(const std::string& path, std::string_view contents, unsigned mode) : m_path(path)
{
    std::string temporary = folderOf(path) + "/.lumaro-rewrite-XXXXXX";
    const int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0) {
        m_error = errno;
        return;
    }
    m_temporary = std::move(temporary);
    const bool written = writeEverything(fd, contents);
    int code = written ? 0 : errno;
    ::fchmod(fd, mode & 07777);
    if (written && ::fsync(fd) != 0)
        code = errno;
    if (::close(fd) != 0 && code == 0)
        code = errno;
    if (code != 0) {
        m_error = code;
        drop();
    }
}

FileRewrite FileRewrite::forNewFile(const std::string& path, std::string_view contents)
{
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return FileRewrite(path, contents, 0666 & ~mask);
}

FileRewrite FileRewrite::forExistingFile(const std::string& path, std::string_view contents)
{
    struct stat original
    {
    };
    if (::stat(path.c_str(), &original) != 0)
        return FileRewrite(errno);
    FileRewrite rewrite(path, contents, original.st_mode);
    if (rewrite.ready())
        copyUserAttributes(path.c_str(), rewrite.m_temporary.c_str());
    return rewrite;
}

FileRewrite::FileRewrite(FileRewrite&& other) noexcept
    : m_path(std::move(other.m_path)), m_temporary(std::exchange(other.m_temporary, {})),
      m_error(other.m_error)
{
}

FileRewrite::~FileRewrite()
{
    drop();
}

void FileRewrite::drop()
{
    if (!m_temporary.empty())
        ::unlink(m_temporary.c_str());
    m_temporary.clear();
}

bool FileRewrite::replace()
{
    if (!ready())
        return false;
    if (::rename(m_temporary.c_str(), m_path.c_str()) != 0) {
        m_error = errno;
        drop();
        return false;
    }
    m_temporary.clear();
    return true;
}

bool FileRewrite::create()
{
    if (!ready())
        return false;
    // link() never replaces: a file that appeared under the name meanwhile is kept and this one dropped.
    if (::link(m_temporary.c_str(), m_path.c_str()) != 0)
        m_error = errno;
    drop();
    return m_error == 0;
}

bool FileRewrite::copyUserAttributes(const char* from, const char* to)
{
    const ssize_t listSize = ::listxattr(from, nullptr, 0);
    if (listSize <= 0)
        return true; // none, or a file system without them: nothing to carry
    std::string names(std::size_t(listSize), '\0');
    const ssize_t got = ::listxattr(from, names.data(), names.size());
    if (got < 0)
        return false;
    names.resize(std::size_t(got));
    bool allCopied = true;
    for (std::size_t start = 0; start < names.size();) {
        const std::size_t end = std::min(names.find('\0', start), names.size());
        const std::string attribute = names.substr(start, end - start);
        start = end + 1;
        if (!attribute.starts_with("user."))
            continue;
        const ssize_t valueSize = ::getxattr(from, attribute.c_str(), nullptr, 0);
        std::string value(std::size_t(std::max<ssize_t>(valueSize, 0)), '\0');
        if (valueSize < 0 || ::getxattr(from, attribute.c_str(), value.data(), value.size()) < 0 ||
            ::setxattr(to, attribute.c_str(), value.data(), value.size(), 0) != 0)
            allCopied = false;
    }
    return allCopied;
}

} // namespace lumaro::platform
