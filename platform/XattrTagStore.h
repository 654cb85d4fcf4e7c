// SPDX-License-Identifier: GPL-3.0-or-later
// Tags in the extended attribute user.xdg.tags, which Dolphin and Baloo read and write too.
#pragma once

#include "platform/FileTagStore.h"

#include <functional>

namespace lumaro::platform {

// The attribute holds the names separated by commas; spaces around a name are dropped on reading, empty names
// skipped; the attribute is removed when the list becomes empty. On a file system without extended attributes
// (FAT and exFAT memory cards) every call goes to `fallback` instead, when there is one. Thread-safe.
class XattrTagStore final : public FileTagStore
{
public:
    // Tests force "no extended attributes here" for a path by returning true.
    using UnsupportedCheck = std::function<bool(const QString& path)>;

    explicit XattrTagStore(FileTagStore* fallback = nullptr, UnsupportedCheck forceUnsupported = {});

    // The store the app and the command line use: extended attributes, and `_index/` files on cards.
    static XattrTagStore& shared();

    std::optional<QStringList> tags(const QString& path, QString* error = nullptr) const override;
    bool setTags(const QString& path, const QStringList& tags, QString* error = nullptr) override;

    // The attribute's value as names and back. A name whose bytes are not valid UTF-8 (another program's, in
    // another encoding) survives the round trip byte for byte; trimming and dropping empty or repeated names
    // are the only changes.
    static QStringList parse(const QByteArray& value);
    static QByteArray serialise(const QStringList& names);

private:
    FileTagStore* m_fallback;
    UnsupportedCheck m_forceUnsupported;
};

} // namespace lumaro::platform
