// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/TagAttribute.h"

#include "platform/files/Utf8Sequence.h"

#include <algorithm>
#include <cerrno>

#include <sys/xattr.h>

namespace lumaro::platform {

namespace {

// Unicode's separators (Zs, Zl, Zp) and the controls Qt counts as space.
bool isSpace(char32_t code)
{
    return code == 0x20 || (code >= 0x09 && code <= 0x0D) || code == 0x85 || code == 0xA0 || code == 0x1680 ||
           (code >= 0x2000 && code <= 0x200A) || code == 0x2028 || code == 0x2029 || code == 0x202F ||
           code == 0x205F || code == 0x3000;
}

char32_t codePoint(const unsigned char* bytes, int length)
{
    if (length == 1)
        return bytes[0];
    char32_t code = bytes[0] & (0xFF >> (length + 1));
    for (int i = 1; i < length; ++i)
        code = (code << 6) | (bytes[i] & 0x3F);
    return code;
}

// `part` without the white space at its ends.
std::string_view trimmed(std::string_view part)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(part.data());
    size_t begin = 0;
    size_t end = 0; // just past the last sequence that is not white space
    bool leading = true;
    for (size_t at = 0; at < part.size();) {
        const int length = utf8SequenceLength(bytes, part.size(), at);
        const size_t step = length == 0 ? 1 : size_t(length);
        const bool space = length > 0 && isSpace(codePoint(bytes + at, length));
        if (leading && space)
            begin = at + step;
        else
            leading = false;
        if (!space)
            end = at + step;
        at += step;
    }
    return leading ? std::string_view() : part.substr(begin, end - begin);
}

} // namespace

std::vector<std::string> TagAttribute::names(std::string_view value)
{
    std::vector<std::string> names;
    for (size_t start = 0; start <= value.size();) {
        const size_t comma = std::min(value.find(',', start), value.size());
        const std::string_view name = trimmed(value.substr(start, comma - start));
        if (!name.empty() && std::find(names.begin(), names.end(), name) == names.end())
            names.emplace_back(name);
        start = comma + 1;
    }
    return names;
}

std::optional<std::string> TagAttribute::read(const char* path, int* errorNumber)
{
    // Another program may rewrite the attribute between asking its size and reading it: ERANGE, ask again.
    for (int attempt = 0; attempt < 3; ++attempt) {
        const ssize_t size = ::getxattr(path, name, nullptr, 0);
        if (size < 0 && errno == ENODATA)
            return std::string();
        std::string value(size_t(std::max<ssize_t>(size, 0)), '\0');
        const ssize_t read = size < 0 ? -1 : ::getxattr(path, name, value.data(), value.size());
        if (read >= 0) {
            value.resize(size_t(read));
            return value;
        }
        if (errno == ENODATA)
            return std::string();
        if (errno != ERANGE)
            break;
    }
    *errorNumber = errno;
    return std::nullopt;
}

bool TagAttribute::write(const char* path, const std::vector<std::string>& names, int* errorNumber)
{
    std::string value;
    for (const std::string& tag : names)
        value += (value.empty() ? "" : ",") + tag;
    const bool written = value.empty() ? ::removexattr(path, name) == 0 || errno == ENODATA
                                       : ::setxattr(path, name, value.data(), value.size(), 0) == 0;
    if (!written)
        *errorNumber = errno;
    return written;
}

} // namespace lumaro::platform
