// SPDX-License-Identifier: GPL-3.0-or-later
// One item put into a freedesktop.org trash folder and taken back out, by the names' bytes and without Qt: its
// info/NAME.trashinfo record and its files/NAME, named alike. FreedesktopTrash (which picks the trash folder)
// and lumaro-cli's front end both put items in through this.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumaro::platform {

class TrashItem
{
public:
    // The name a trash gives the `attempt`-th item called `name`: "IMG_1.jpg", then "IMG_1.2.jpg",
    // "IMG_1.3.jpg", … (GLib's numbering, which the desktop's file managers read). A name whose record would
    // not fit in a file name is cut short between characters, its extension kept.
    static std::string name(std::string_view fileName, int attempt);

    // The Path value of a record: percent-encoded byte by byte, "/" and the unreserved characters kept.
    static std::string encodedPath(std::string_view path);

    // The whole record of an item deleted now (local time, as the file managers write it) from
    // `recordedPath`: absolute for the home trash, relative to the volume's top for a volume's trash.
    static std::string record(std::string_view recordedPath);

    struct Placed
    {
        std::string trashedPath;
        std::string infoPath;
    };

    // Creates `trashDir`/info/NAME.trashinfo with `record` (O_EXCL, so two trashers never share a name), then
    // renames `source` to `trashDir`/files/NAME without replacing anything; a taken name, or a files/NAME
    // left without its record by a trasher that died half-way, moves on to the next name. nullopt with
    // `error` set when the record cannot be written, the file cannot be moved (its record is taken back) or
    // no name is free.
    static std::optional<Placed> place(const std::string& source, std::string_view fileName,
                                       const std::string& trashDir, const std::string& record,
                                       std::string* error);
    // The names of the records in `trashDir`/info ("NAME.trashinfo"), as the folder lists them; nullopt when
    // it cannot be read.
    static std::optional<std::vector<std::string>> recordNames(const std::string& trashDir);
    // Renames the trashed file back to `target` without replacing anything, then removes its record.
    static bool putBack(const Placed& item, const std::string& target);
    // Whether a volume trash (TOP/.Trash-UID, TOP/.Trash/UID) lies at `folder` or any folder above it: where
    // one may, TrashDirectories also searches the volume's trash.
    static bool hasVolumeTrashAbove(const std::string& folder);
};

} // namespace lumaro::platform
