// SPDX-License-Identifier: GPL-3.0-or-later
// A folder's direct entries as the desktop shows them (no dot-names, none named in its ".hidden"), without
// Qt: the listing lumaro-cli's Qt-free front end shares with DirectoryLister.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumaro::platform {

struct VisibleEntry
{
    enum class Kind
    {
        file,
        directory,
        other
    };

    std::string name; // the name's bytes as on disk
    Kind kind = Kind::other;
};

// Reads the folder with readdir, using the entry type the file system reports and asking stat only when it
// reports none or the entry is a link (links count as what they point to). Thread-safe, blocking.
class VisibleEntries
{
public:
    // The ".hidden" file is someone else's: only a plain file of at most this size is read (a FIFO, a device
    // or a huge file counts as no list).
    static constexpr long long maxHiddenListBytes = 1 << 20;

    // Whether `folder` is a folder (a link to one counts) this process may read and enter.
    static bool isListableFolder(const char* folder);
    // nullopt when the folder cannot be read; `errorNumber` then holds errno's value.
    static std::optional<std::vector<VisibleEntry>> read(const char* folder, int* errorNumber = nullptr);
    // The names the ".hidden" file of the open folder `folderFd` lists, sorted, each once.
    static std::vector<std::string> hiddenNames(int folderFd);
    // The names of a ".hidden" file's content, sorted, each once; a line's surrounding blanks (a "\r" of a
    // file edited on Windows) are not part of the name.
    static std::vector<std::string> parseHiddenList(std::string_view content);
};

} // namespace lumaro::platform
