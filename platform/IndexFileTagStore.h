// SPDX-License-Identifier: GPL-3.0-or-later
// Tags kept for a whole folder in _index/file_tags.json, for file systems without extended attributes.
#pragma once

#include "platform/FileTagStore.h"

#include <mutex>

namespace lumaro::platform {

// FAT and exFAT memory cards cannot hold user.xdg.tags, and photographers cull straight on the card; there the
// tags of a folder's files live in one JSON object {"IMG_0001.JPG": ["red"], …} in the folder's `_index/`.
// The file is rewritten through a temporary file and a rename, so a crash leaves the old one. A plain file
// named `_index` is never replaced (the write fails). Thread-safe: one read-modify-write at a time.
class IndexFileTagStore final : public FileTagStore
{
public:
    static inline const QString fileName = QStringLiteral("file_tags.json");

    static QString tagFileFor(const QString& picturePath);

    std::optional<QStringList> tags(const QString& path, QString* error = nullptr) const override;
    bool setTags(const QString& path, const QStringList& tags, QString* error = nullptr) override;

private:
    mutable std::mutex m_mutex;
};

} // namespace lumaro::platform
