// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/folders/FolderCard.h"

#include <QDir>

namespace lumaro::browse {

QString FolderCard::coverPath(const std::function<bool(const QString& path)>& isFavourite) const
{
    if (names.isEmpty())
        return {};
    const QDir folder(path);
    if (isFavourite) {
        for (const QString& name : names) {
            if (isFavourite(folder.filePath(name)))
                return folder.filePath(name);
        }
    }
    return folder.filePath(names.constFirst());
}

} // namespace lumaro::browse
