// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/ModelFiles.h"

#include "platform/AppPaths.h"

#include <QDir>
#include <QFileInfo>

namespace lumaro::platform {

QString ModelFiles::find(const QString& relativePath)
{
    for (const QString& dir : AppPaths::modelSearchDirs()) {
        const QString candidate = QDir(dir).filePath(relativePath);
        if (QFileInfo(candidate).isFile())
            return candidate;
    }
    return {};
}

} // namespace lumaro::platform
