// SPDX-License-Identifier: GPL-3.0-or-later
// Moves a file to a new path without ever replacing anything: a rename on one volume, a copy and a removal
// of the original across volumes.
#pragma once

#include <QString>

#include <functional>

namespace lumaro::platform {

struct RenameResult
{
    bool ok = false;
    bool crossDevice = false;  // the two paths are on different file systems (EXDEV)
    bool targetExists = false; // something already has the target's name
    QString error;
};

// A rename that never replaces anything. Tests inject one that fails with crossDevice.
using RenameFunction = std::function<RenameResult(const QString& from, const QString& to)>;
RenameFunction systemRenameWithoutReplacing();

// Thread-safe, blocking. The target's folder must exist.
class FileMover
{
public:
    explicit FileMover(RenameFunction rename = systemRenameWithoutReplacing());

    // Renames `from` to `to`; when they are on different volumes, copies (hidden temporary file renamed into
    // place, colour tags and time kept) and removes the original only once the copy is whole. A taken target
    // fails with targetExists and changes nothing.
    RenameResult move(const QString& from, const QString& to) const;

    // The cross-volume half of move(): copy beside the target, then remove `from` (left in place when its
    // volume is read-only). False with `error` set when the target is taken (before or during the copy) or
    // the copy fails; `from` is then untouched.
    static bool copyThenRemove(const QString& from, const QString& to, QString* error);

private:
    RenameFunction m_rename;
};

} // namespace lumaro::platform
