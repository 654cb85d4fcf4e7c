// SPDX-License-Identifier: GPL-3.0-or-later
// A folder's ".hidden" file: the names file managers leave out of the folder, one a line (the freedesktop
// convention GTK and KDE honour). Read by the listing, added to when the app makes its `_index` folder.
#pragma once

#include "platform/files/VisibleEntries.h"

#include <QByteArray>
#include <QString>

#include <vector>

namespace lumaro::platform {

// Thread-safe, blocking. The file is someone else's: only a plain file of at most maxBytes is read (a FIFO,
// a device or a huge file counts as no list), and writing keeps every line it had.
class HiddenList
{
public:
    static constexpr qint64 maxBytes = VisibleEntries::maxHiddenListBytes;

    // The names listed, sorted, each once; a line's surrounding blanks (a "\r" of a file edited on Windows)
    // are not part of the name.
    static std::vector<QByteArray> names(const QString& folder);
    static std::vector<QByteArray> parse(const QByteArray& content);
    // Adds `name` unless it is already listed; a last line without its newline gets one first, so it is not
    // glued to the new name. False when the file cannot be read as a list or written.
    static bool add(const QString& folder, const QByteArray& name);
};

} // namespace lumaro::platform
