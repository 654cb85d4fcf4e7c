// SPDX-License-Identifier: GPL-3.0-or-later
// Fast listing of one folder's direct entries, as the desktop shows them (no dot-names, none named in .hidden).
#pragma once

#include "platform/files/VisibleEntries.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace lumaro::platform {

struct DirectoryEntry
{
    using Kind = VisibleEntry::Kind;

    QByteArray nativeName; // the name's bytes as on disk: byte order of UTF-8 is code-point order
    Kind kind = Kind::other;

    QString name() const;
};

// VisibleEntries in Qt's types: the rules are those of VisibleEntries::read. Thread-safe, blocking.
class DirectoryLister
{
public:
    // nullopt when the folder cannot be read; `error` then holds the system's reason.
    static std::optional<std::vector<DirectoryEntry>> listVisible(const QString& folder, QString* error = nullptr);
};

} // namespace lumaro::platform
