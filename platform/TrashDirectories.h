// SPDX-License-Identifier: GPL-3.0-or-later
// Where the freedesktop.org Trash of a file lives: the home trash, or a trash at the top of the file's volume.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

namespace lumaro::platform {

// The volume a path lies on: its device number and its top directory (the mount point).
struct Volume
{
    quint64 device = 0;
    QString topDir;
};

// nullopt when the path (or, for a path that does not exist yet, its nearest existing parent) cannot be
// examined. Injected by tests to place folders on pretend volumes.
using VolumeLookup = std::function<std::optional<Volume>(const QString& path)>;
VolumeLookup systemVolumeLookup();

// Thread-safe; reads the environment on each call so that a test's XDG_DATA_HOME is honoured.
class TrashDirectories
{
public:
    // $XDG_DATA_HOME/Trash, or $HOME/.local/share/Trash when XDG_DATA_HOME is unset or not absolute. Empty
    // when neither gives an absolute folder (a relative path would put the Trash under the working directory).
    static QString homeTrash();

    // The trash folder to use for a file on `volume` other than the home one: $topdir/.Trash/$uid when
    // $topdir/.Trash is a real directory (not a link) with the sticky bit, else $topdir/.Trash-$uid.
    // Nothing is created here.
    static QString volumeTrash(const QString& topDir);

    // Every trash folder that may hold a file which came from `path`'s volume, the home trash first.
    static QStringList candidatesFor(const QString& path, const VolumeLookup& lookup);

    // The folder a per-volume trash's relative Path is taken from; empty for the home trash (absolute paths).
    static QString topDirOfTrash(const QString& trashDir);

    // The name a trash gives the `attempt`-th item called `name`: "IMG_1.jpg", then "IMG_1.2.jpg",
    // "IMG_1.3.jpg", … (GLib's numbering, which Lumaro writes too).
    static QString itemName(const QString& name, int attempt);

    // Creates `trashDir` with its files/ and info/ folders (mode 0700) when missing. The parents of a home
    // trash are created too (a fresh account has no ~/.local/share yet).
    static bool ensure(const QString& trashDir, QString* error);
};

} // namespace lumaro::platform
