// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/XattrTagStore.h"

#include "platform/files/FileNameCodec.h"

#include "platform/IndexFileTagStore.h"

#include <QFile>

#include <cerrno>
#include <cstring>

#include <sys/xattr.h>

namespace lumaro::platform {

namespace {

constexpr const char* kAttribute = "user.xdg.tags";

bool isUnsupported(int code)
{
    return code == ENOTSUP || code == EOPNOTSUPP;
}

QString systemError(int code)
{
    return QString::fromLocal8Bit(std::strerror(code));
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
    for (const QByteArray& part : value.split(',')) {
        const QString name = QString::fromUtf8(part).trimmed();
        if (!name.isEmpty() && !names.contains(name))
            names << name;
    }
    return names;
}

std::optional<QStringList> XattrTagStore::tags(const QString& path, QString* error) const
{
    const bool forced = m_forceUnsupported && m_forceUnsupported(path);
    const QByteArray native = FileNameCodec::encode(path);
    ssize_t size = forced ? -1 : ::getxattr(native.constData(), kAttribute, nullptr, 0);
    const int code = forced ? ENOTSUP : errno;
    if (size < 0 && code == ENODATA)
        return QStringList();
    if (size < 0 && isUnsupported(code) && m_fallback)
        return m_fallback->tags(path, error);
    if (size < 0) {
        if (error)
            *error = systemError(code);
        return std::nullopt;
    }
    QByteArray value(size, '\0');
    size = ::getxattr(native.constData(), kAttribute, value.data(), size_t(value.size()));
    if (size < 0) {
        if (error)
            *error = systemError(errno);
        return std::nullopt;
    }
    return parse(value.left(size));
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
    } else if (cleaned.isEmpty()) {
        if (::removexattr(native.constData(), kAttribute) == 0 || errno == ENODATA)
            return true;
        code = errno;
    } else {
        const QByteArray value = cleaned.join(QLatin1Char(',')).toUtf8();
        if (::setxattr(native.constData(), kAttribute, value.constData(), size_t(value.size()), 0) == 0)
            return true;
        code = errno;
    }
    if (isUnsupported(code) && m_fallback)
        return m_fallback->setTags(path, cleaned, error);
    if (error)
        *error = systemError(code);
    return false;
}

} // namespace lumaro::platform
