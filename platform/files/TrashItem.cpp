// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/TrashItem.h"

#include "platform/files/RenameWithoutReplacing.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumaro::platform {

namespace {

constexpr int maxNameAttempts = 1000;
// The record is the item's name and ".trashinfo", and must fit in a file name (255 bytes).
constexpr std::string_view recordSuffix = ".trashinfo";
constexpr size_t longestItemName = 255 - recordSuffix.size();
// Longer than this, what follows the last dot is no extension worth keeping whole.
constexpr size_t longestExtension = 32;

// The first `bytes` of `text`, ending between characters: no UTF-8 sequence is cut in two.
std::string_view startOf(std::string_view text, size_t bytes)
{
    size_t end = std::min(bytes, text.size());
    while (end > 0 && end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80)
        --end;
    return text.substr(0, end);
}

// Creates the record exclusively and writes it whole; false with errno kept (EEXIST: the name is taken).
bool writeRecordExclusively(const std::string& infoPath, const std::string& content)
{
    const int fd = ::open(infoPath.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (fd < 0)
        return false;
    for (size_t written = 0; written < content.size();) {
        const ssize_t put = ::write(fd, content.data() + written, content.size() - written);
        if (put < 0 && errno == EINTR)
            continue;
        if (put < 0) {
            const int saved = errno;
            ::close(fd);
            ::unlink(infoPath.c_str());
            errno = saved == EEXIST ? EIO : saved;
            return false;
        }
        written += size_t(put);
    }
    return ::close(fd) == 0;
}

bool isUnreserved(unsigned char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '.' || c == '_' || c == '~';
}

void setError(std::string* error, std::string text)
{
    if (error)
        *error = std::move(text);
}

} // namespace

std::string TrashItem::name(std::string_view fileName, int attempt)
{
    const size_t dot = fileName.rfind('.');
    const bool hasExtension =
        dot != std::string_view::npos && dot != 0 && fileName.size() - dot <= longestExtension;
    const std::string_view stem = hasExtension ? fileName.substr(0, dot) : fileName;
    const std::string_view extension = hasExtension ? fileName.substr(dot) : std::string_view();
    const std::string number = attempt <= 1 ? std::string() : '.' + std::to_string(attempt);
    // A name too long for its record (a long title in Chinese is 3 bytes a character) keeps its start and its
    // extension; the record's Path keeps the whole name, which is what comes back on a restore.
    const size_t room = longestItemName - number.size() - extension.size();
    return std::string(startOf(stem, room)) + number + std::string(extension);
}

std::string TrashItem::encodedPath(std::string_view path)
{
    static constexpr char hex[] = "0123456789ABCDEF";
    std::string encoded;
    encoded.reserve(path.size());
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (isUnreserved(byte) || byte == '/') {
            encoded += c;
        } else {
            encoded += '%';
            encoded += hex[byte >> 4];
            encoded += hex[byte & 0xF];
        }
    }
    return encoded;
}

std::string TrashItem::record(std::string_view recordedPath)
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    char date[32];
    const size_t length = std::strftime(date, sizeof date, "%Y-%m-%dT%H:%M:%S", &local);
    return "[Trash Info]\nPath=" + encodedPath(recordedPath) + "\nDeletionDate=" + std::string(date, length) +
           "\n";
}

std::optional<TrashItem::Placed> TrashItem::place(const std::string& source, std::string_view fileName,
                                                  const std::string& trashDir, const std::string& record,
                                                  std::string* error)
{
    for (int attempt = 1; attempt <= maxNameAttempts; ++attempt) {
        const std::string itemName = name(fileName, attempt);
        const std::string infoPath = trashDir + "/info/" + itemName + std::string(recordSuffix);
        if (!writeRecordExclusively(infoPath, record)) {
            if (errno == EEXIST)
                continue;
            setError(error, "cannot write " + infoPath + ": " + std::strerror(errno));
            return std::nullopt;
        }
        const std::string trashedPath = trashDir + "/files/" + itemName;
        if (renameBytesWithoutReplacing(source.c_str(), trashedPath.c_str()))
            return Placed{trashedPath, infoPath};
        const int renameError = errno;
        ::unlink(infoPath.c_str());
        struct stat left
        {
        };
        if (::lstat(trashedPath.c_str(), &left) == 0)
            continue;
        setError(error, "cannot move " + source + " to the Trash: " + std::strerror(renameError));
        return std::nullopt;
    }
    setError(error, "no free name in " + trashDir);
    return std::nullopt;
}

std::optional<std::vector<std::string>> TrashItem::recordNames(const std::string& trashDir)
{
    DIR* dir = ::opendir((trashDir + "/info").c_str());
    if (!dir)
        return std::nullopt;
    std::vector<std::string> names;
    while (const dirent* entry = ::readdir(dir)) {
        const std::string_view name = entry->d_name;
        if (name.ends_with(".trashinfo"))
            names.emplace_back(name);
    }
    ::closedir(dir);
    return names;
}

bool TrashItem::putBack(const Placed& item, const std::string& target)
{
    if (!renameBytesWithoutReplacing(item.trashedPath.c_str(), target.c_str()))
        return false;
    ::unlink(item.infoPath.c_str());
    return true;
}

bool TrashItem::hasVolumeTrashAbove(const std::string& folder)
{
    const std::string uid = std::to_string(::getuid());
    for (std::string dir = folder;; dir = dir.substr(0, std::max<size_t>(dir.rfind('/'), 1))) {
        const std::string top = dir == "/" ? "" : dir;
        for (const std::string& trash : {top + "/.Trash-" + uid, top + "/.Trash/" + uid}) {
            struct stat info
            {
            };
            if (::lstat(trash.c_str(), &info) == 0)
                return true;
        }
        if (dir == "/")
            return false;
    }
}

} // namespace lumaro::platform
