// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/DirectoryLister.h"

#include "platform/files/FileNameCodec.h"

#include <cstring>

namespace lumaro::platform {

QString DirectoryEntry::name() const
{
    return FileNameCodec::decode(nativeName);
}

std::optional<std::vector<DirectoryEntry>> DirectoryLister::listVisible(const QString& folder, QString* error)
{
    int errorNumber = 0;
    const auto visible = VisibleEntries::read(FileNameCodec::encode(folder).constData(), &errorNumber);
    if (!visible) {
        if (error)
            *error = QString::fromLocal8Bit(std::strerror(errorNumber));
        return std::nullopt;
    }
    std::vector<DirectoryEntry> entries;
    entries.reserve(visible->size());
    for (const VisibleEntry& entry : *visible)
        entries.push_back({QByteArray::fromStdString(entry.name), entry.kind});
    return entries;
}

} // namespace lumaro::platform
