// SPDX-License-Identifier: GPL-3.0-or-later
// The freedesktop.org Trash, written the way the desktop's own file managers write it, so that they show what
// Lumaro trashed (with its original place) and Lumaro can put back what they trashed.
#pragma once

#include "platform/TrashDirectories.h"
#include "platform/Trash.h"

namespace lumaro::platform {

// Thread-safe, blocking. A file on the home trash's volume goes to the home trash; a file on another volume
// goes to that volume's trash ($topdir/.Trash/$uid when the administrator made one, else $topdir/.Trash-$uid),
// with its Path relative to $topdir. The info/NAME.trashinfo record is created first (O_EXCL, so two trashers
// never share a name), then the file is renamed into files/NAME without replacing anything; a name already
// used in the trash gets "NAME.2.ext", "NAME.3.ext", …. When no trash can be used (no home folder, a volume
// whose top is read-only) the call fails with the reason: nothing is ever deleted outright or copied away.
class FreedesktopTrash final : public Trash
{
public:
    static FreedesktopTrash& shared();
    explicit FreedesktopTrash(VolumeLookup lookup = systemVolumeLookup());

    std::optional<TrashedItem> moveToTrash(const QString& path, QString* error) override;

    // The trash folder `path` would go to (not created).
    QString trashFor(const QString& path, QString* error = nullptr) const;

    // The Path value of a .trashinfo for `absolutePath`, percent-encoded byte by byte ("/" kept).
    static QByteArray encodedPath(const QString& absolutePath);

private:
    VolumeLookup m_lookup;
};

} // namespace lumaro::platform
