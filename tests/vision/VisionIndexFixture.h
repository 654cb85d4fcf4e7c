// SPDX-License-Identifier: GPL-3.0-or-later
// Writes vision index files as an analysis run would, so grouping tests need no classifier.
#pragma once

#include "tests/support/TempFolder.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QString>

#include <algorithm>
#include <utility>
#include <vector>

namespace lumaro::testing {

// `marks`: file name and mark; an empty mark writes the entry without "classification".
inline QString writeVisionIndex(TempFolder& folder, const QString& runName, const QString& generatedAt,
                                const std::vector<std::pair<QString, QString>>& marks)
{
    QJsonArray results;
    for (const auto& [name, mark] : marks) {
        QJsonObject result{{QStringLiteral("fileName"), name}, {QStringLiteral("filePath"), folder.filePath(name)}};
        if (!mark.isEmpty())
            result.insert(QStringLiteral("classification"), mark);
        results.append(result);
    }
    QJsonObject root{{QStringLiteral("sourceFolderPath"), folder.path()},
                     {QStringLiteral("totalImages"), int(results.size())},
                     {QStringLiteral("results"), results}};
    if (!generatedAt.isEmpty())
        root.insert(QStringLiteral("generatedAt"), generatedAt);
    return folder.write(QStringLiteral("_index/") + runName, QJsonDocument(root).toJson());
}

// The folder's visible file names in code-point order, as the browsing list has them.
inline QStringList visibleFileNames(const TempFolder& folder)
{
    QStringList names = QDir(folder.path()).entryList(QDir::Files | QDir::System);
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace lumaro::testing
