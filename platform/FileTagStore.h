// SPDX-License-Identifier: GPL-3.0-or-later
// A file's colour tags (and any other tag names other programs gave it), read and written as a whole list.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace lumaro::platform {

// Implementations are thread-safe and blocking. A file without tags reads as an empty list; nullopt means the
// tags could not be read (the error says why). Writing an empty list removes the tags.
class FileTagStore
{
public:
    virtual ~FileTagStore() = default;
    virtual std::optional<QStringList> tags(const QString& path, QString* error = nullptr) const = 0;
    virtual bool setTags(const QString& path, const QStringList& tags, QString* error = nullptr) = 0;
};

} // namespace lumaro::platform
