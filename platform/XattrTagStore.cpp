// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/XattrTagStore.h"

#include "platform/files/FileNameCodec.h"
#include "platform/files/TagAttribute.h"

#include "platform/IndexFileTagStore.h"

#include <QFile>

#include <cerrno>
#include <cstring>

#include <sys/xattr.h>

namespace lumaro::platform {

namespace {

bool isUnsupported(int code)
{
    return code == ENOTSUP || code == EOPNOTSUPP;
}

QString systemError(int code)
{
    return QString::fromLocal8Bit(std::strerror(code));
}

// A byte that is not part of valid UTF-8 is held as the lone surrogate U+DC80 + byte (never produced by
// decoding valid UTF-8), so another program's tag in some other encoding is written back exactly as it was
// read.
constexpr char16_t kEscapeBase = 0xDC00;

bool isContinuation(unsigned char byte)
{
    return (byte & 0xC0) == 0x80;
}

// The length of the valid UTF-8 sequence at `at`, or 0 when the byte there does not start one.
int validSequenceLength(const QByteArray& bytes, qsizetype at)
{
    const auto byte = [&](qsizetype i) { return static_cast<unsigned char>(bytes[at + i]); };
    const unsigned char lead = byte(0);
    int length = 0;
    char32_t lowest = 0;
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        lowest = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        lowest = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        lowest = 0x10000;
    } else {
        return 0;
    }
    if (at + length > bytes.size())
        return 0;
    char32_t code = lead & (0xFF >> (length + 1));
    for (int i = 1; i < length; ++i) {
        if (!isContinuation(byte(i)))
            return 0;
        code = (code << 6) | (byte(i) & 0x3F);
    }
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < lowest || code > 0x10FFFF || surrogate ? 0 : length;
}

QString decodedName(const QByteArray& bytes)
{
    QString name;
    qsizetype at = 0;
    while (at < bytes.size()) {
        const int length = validSequenceLength(bytes, at);
        if (length == 0) {
            name += QChar(char16_t(kEscapeBase + static_cast<unsigned char>(bytes[at])));
            ++at;
            continue;
        }
        name += QString::fromUtf8(bytes.constData() + at, length);
        at += length;
    }
    return name;
}

QByteArray encodedName(const QString& name)
{
    QByteArray bytes;
    qsizetype runStart = 0;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const char16_t unit = name[i].unicode();
        if (unit < kEscapeBase + 0x80 || unit > kEscapeBase + 0xFF)
            continue;
        const bool paired = i > 0 && name[i - 1].isHighSurrogate();
        if (paired)
            continue;
        bytes += QStringView(name).mid(runStart, i - runStart).toUtf8();
        bytes += char(unit - kEscapeBase);
        runStart = i + 1;
    }
    bytes += QStringView(name).mid(runStart).toUtf8();
    return bytes;
}

} // namespace

XattrTagStore::XattrTagStore(FileTagStore* fallback, UnsupportedCheck forceUnsupported)
    : m_fallback(fallback)
    , m_forceUnsupported(std::move(forceUnsupported))
{
}

XattrTagStore& XattrTagStore::shared()
{
    static IndexFileTagStore cardStore;
    static XattrTagStore store(&cardStore);
    return store;
}

QStringList XattrTagStore::parse(const QByteArray& value)
{
    QStringList names;
    for (const std::string& name : TagAttribute::names(std::string_view(value.constData(), size_t(value.size()))))
        names << decodedName(QByteArray::fromStdString(name));
    return names;
}

QByteArray XattrTagStore::serialise(const QStringList& names)
{
    QByteArray value;
    for (const QString& name : names) {
        if (!value.isEmpty())
            value += ',';
        value += encodedName(name);
    }
    return value;
}

std::optional<QStringList> XattrTagStore::tags(const QString& path, QString* error) const
{
    int code = ENOTSUP;
    const auto value = m_forceUnsupported && m_forceUnsupported(path)
                           ? std::nullopt
                           : TagAttribute::read(FileNameCodec::encode(path).constData(), &code);
    if (!value && isUnsupported(code) && m_fallback)
        return m_fallback->tags(path, error);
    if (!value) {
        if (error)
            *error = systemError(code);
        return std::nullopt;
    }
    return parse(QByteArray::fromStdString(*value));
}

bool XattrTagStore::setTags(const QString& path, const QStringList& tags, QString* error)
{
    const QByteArray native = FileNameCodec::encode(path);
    QStringList cleaned;
    for (const QString& tag : tags) {
        const QString name = tag.trimmed();
        if (!name.isEmpty() && !name.contains(QLatin1Char(',')) && !cleaned.contains(name))
            cleaned << name;
    }
    int code = 0;
    if (m_forceUnsupported && m_forceUnsupported(path)) {
        code = ENOTSUP;
    } else {
        std::vector<std::string> names;
        for (const QString& tag : cleaned)
            names.push_back(encodedName(tag).toStdString());
        if (TagAttribute::write(native.constData(), names, &code))
            return true;
    }
    if (isUnsupported(code) && m_fallback)
        return m_fallback->setTags(path, cleaned, error);
    if (error)
        *error = systemError(code);
    return false;
}

} // namespace lumaro::platform
