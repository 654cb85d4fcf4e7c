// SPDX-License-Identifier: GPL-3.0-or-later
// "Move this file to the Trash and tell me where it went": the only way Lumaro removes a picture.
#pragma once

#include <QString>

#include <optional>

namespace lumaro::platform {

struct TrashedItem
{
    QString trashedPath;   // the file inside the Trash's files/ folder
    QString trashInfoPath; // its .trashinfo record
};

// Implementations never delete outright: when no trash can be used the call fails with a reason.
// Thread-safe; blocking (callers run it off the main thread).
class Trash
{
public:
    virtual ~Trash() = default;
    virtual std::optional<TrashedItem> moveToTrash(const QString& path, QString* error) = 0;
};

} // namespace lumaro::platform
