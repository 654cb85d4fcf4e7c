// SPDX-License-Identifier: GPL-3.0-or-later
// A small file written the safe way, by its name's bytes and without Qt: a complete, synced temporary file
// beside it, then renamed over it or linked to its name. FileReplacer and lumaro-cli's Qt-free XMP helper
// share it.
#pragma once

#include <string>
#include <string_view>

namespace lumaro::platform {

// A temporary file beside `path`, written in full and synced, not yet under its name. Dropped (removed)
// unless committed. Failures leave errno's value in error().
class FileRewrite
{
public:
    // `mode` gives the new file's permission bits.
    FileRewrite(const std::string& path, std::string_view contents, unsigned mode);
    // For a file that does not exist yet: the permission bits the umask allows.
    static FileRewrite forNewFile(const std::string& path, std::string_view contents);
    // For a file that exists: its permission bits and user.* extended attributes (colour tags) carried over,
    // so the rewritten file looks to the user like the same one. error() is set when it cannot be examined.
    static FileRewrite forExistingFile(const std::string& path, std::string_view contents);
    FileRewrite(FileRewrite&& other) noexcept;
    FileRewrite(const FileRewrite&) = delete;
    FileRewrite& operator=(const FileRewrite&) = delete;
    FileRewrite& operator=(FileRewrite&&) = delete;
    ~FileRewrite();

    bool ready() const { return m_error == 0; }
    int error() const { return m_error; }

    // Renames the temporary file over `path`.
    bool replace();
    // Gives the temporary file `path`'s name, never replacing a file that has it, even one that appeared
    // meanwhile (then error() is EEXIST).
    bool create();

    // Copies `from`'s user.* extended attributes onto `to`; false when one of them could not be copied.
    static bool copyUserAttributes(const char* from, const char* to);

private:
    explicit FileRewrite(int error);
    void drop();

    std::string m_path;
    std::string m_temporary;
    int m_error = 0;
};

} // namespace lumaro::platform
