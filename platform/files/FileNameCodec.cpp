// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/FileNameCodec.h"

#include "platform/files/FileBytes.h"
#include "platform/files/PathKind.h"
#include "platform/files/Utf8Sequence.h"

#include <algorithm>
#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lumaro::platform {

namespace {

constexpr char16_t kEscapeBase = 0xDC00; // byte b (0x80…0xFF) ↔ U+DC00 + b

// An escape is a lone low surrogate in U+DC80…U+DCFF; one that follows a high surrogate is half of a real
// character (📷 is U+D83D U+DCF7).
bool isEscapeAt(const QString& path, qsizetype i)
{
    const char16_t c = path.at(i).unicode();
    return c >= kEscapeBase + 0x80 && c <= kEscapeBase + 0xFF &&
           (i == 0 || !path.at(i - 1).isHighSurrogate());
}

std::optional<struct stat> linkStat(const QString& path)
{
    struct stat info
    {
    };
    if (::lstat(FileNameCodec::encode(path).constData(), &info) != 0)
        return std::nullopt;
    return info;
}

} // namespace

QString FileNameCodec::decode(const QByteArray& native)
{
    const auto* bytes = reinterpret_cast<const unsigned char*>(native.constData());
    const qsizetype size = native.size();
    QString out;
    out.reserve(size);
    qsizetype runStart = 0;
    qsizetype at = 0;
    while (at < size) {
        const int length = utf8SequenceLength(bytes, size_t(size), size_t(at));
        if (length > 0) {
            at += length;
            continue;
        }
        out += QString::fromUtf8(native.constData() + runStart, at - runStart);
        out += QChar(char16_t(kEscapeBase + bytes[at]));
        runStart = ++at;
    }
    if (runStart == 0)
        return QString::fromUtf8(native);
    out += QString::fromUtf8(native.constData() + runStart, size - runStart);
    return out;
}

QByteArray FileNameCodec::encode(const QString& path)
{
    if (!hasRawBytes(path))
        return path.toUtf8();
    QByteArray out;
    out.reserve(path.size() * 3);
    qsizetype runStart = 0;
    for (qsizetype i = 0; i < path.size(); ++i) {
        if (!isEscapeAt(path, i))
            continue;
        out += QStringView(path).mid(runStart, i - runStart).toUtf8();
        out += char(path.at(i).unicode() - kEscapeBase);
        runStart = i + 1;
    }
    out += QStringView(path).mid(runStart).toUtf8();
    return out;
}

bool FileNameCodec::isRawByteAt(const QString& path, qsizetype i)
{
    return i >= 0 && i < path.size() && isEscapeAt(path, i);
}

bool FileNameCodec::hasRawBytes(const QString& path)
{
    for (qsizetype i = 0; i < path.size(); ++i) {
        if (isEscapeAt(path, i))
            return true;
    }
    return false;
}

bool FileNameCodec::exists(const QString& path)
{
    return linkStat(path).has_value();
}

bool FileNameCodec::isFile(const QString& path)
{
    return PathKind::isFile(encode(path).constData());
}

bool FileNameCodec::isDirectory(const QString& path)
{
    return PathKind::isDirectory(encode(path).constData());
}

bool FileNameCodec::isWritable(const QString& path)
{
    return ::access(encode(path).constData(), W_OK) == 0;
}

bool FileNameCodec::remove(const QString& path)
{
    return ::unlink(encode(path).constData()) == 0;
}

int FileNameCodec::openForReading(const QString& path)
{
    return ::open(encode(path).constData(), O_RDONLY | O_CLOEXEC);
}

bool FileNameCodec::openForReading(QFile& file, const QString& path)
{
    const int fd = openForReading(path);
    return fd >= 0 && file.open(fd, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
}

QByteArray FileNameCodec::readAll(const QString& path, bool* ok, qint64 limit)
{
    const auto content = readFileBytes(encode(path).constData(), limit);
    if (ok)
        *ok = content.has_value();
    return content ? QByteArray::fromStdString(*content) : QByteArray();
}

} // namespace lumaro::platform
