// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/PairingArguments.h"

#include "cli/FolderArgument.h"

#include <QDir>

namespace lumaro::cli {

void addPairingOptions(CommandLine& line)
{
    line.addOption({QStringLiteral("jpg"), QStringLiteral("The folder of the JPG files (the ones kept)."), QStringLiteral("DIR")});
    line.addOption({QStringLiteral("raw"), QStringLiteral("The folder of the RAW files."), QStringLiteral("DIR")});
}

std::optional<PairingFolders> pairingFolders(CommandLine& line)
{
    if (!line.isSet(QStringLiteral("jpg")) || !line.isSet(QStringLiteral("raw"))) {
        line.usageError(QStringLiteral("both --jpg DIR and --raw DIR are needed"));
        return std::nullopt;
    }
    PairingFolders folders{line.value(QStringLiteral("jpg")), line.value(QStringLiteral("raw"))};
    for (const QString& folder : {folders.jpg, folders.raw}) {
        if (const auto problem = problemWithFolder(folder)) {
            line.fail(*problem, 2);
            return std::nullopt;
        }
    }
    folders.jpg = QDir(folders.jpg).absolutePath();
    folders.raw = QDir(folders.raw).absolutePath();
    return folders;
}

} // namespace lumaro::cli
