// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/support/XdgTags.h"

#include <QFile>

#include <sys/xattr.h>

namespace lumaro::testing {

bool setXdgTags(const QString& path, const QByteArray& value)
{
    return ::setxattr(QFile::encodeName(path).constData(), "user.xdg.tags", value.constData(),
                      size_t(value.size()), 0) == 0;
}

std::optional<QByteArray> xdgTags(const QString& path)
{
    char buffer[512];
    const ssize_t size =
        ::getxattr(QFile::encodeName(path).constData(), "user.xdg.tags", buffer, sizeof buffer);
    if (size < 0)
        return std::nullopt;
    return QByteArray(buffer, int(size));
}

} // namespace lumaro::testing
