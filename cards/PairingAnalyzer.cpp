// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/PairingAnalyzer.h"

#include "cards/ByteCountFormatter.h"
#include "cards/PairingFileTypes.h"
#include "platform/FolderFiles.h"
#include "platform/Log.h"

#include <QSet>

#include <functional>

namespace lumaro::cards {

using platform::Log;

namespace {

struct ListedFile
{
    QString name;
    qint64 size = 0;
};

// The direct files of `folder` whose names pass `accept`, with their sizes (an unreadable size counts as 0).
std::vector<ListedFile> listFolder(const QString& folder, const std::function<bool(const QString&)>& accept)
{
    QString error;
    const auto files = platform::FolderFiles::list(folder, &error);
    if (!files) {
        Log::raw(QStringLiteral("Error reading directory: ") + error);
        return {};
    }
    std::vector<ListedFile> kept;
    for (const platform::FolderFile& file : *files) {
        if (!accept(file.name))
            continue;
        if (!file.sizeKnown)
            Log::raw(QStringLiteral("Error calculating file size: ") + file.sizeError);
        kept.push_back({file.name, file.size});
    }
    return kept;
}

QString joinPath(const QString& folder, const QString& name)
{
    if (folder.endsWith(QLatin1Char('/')))
        return folder + name;
    return folder + QLatin1Char('/') + name;
}

void logList(const QString& title, const QString& totalLabel, const QStringList& paths)
{
    Log::raw(title + QStringLiteral(" (") + QString::number(paths.size()) + QStringLiteral("个):"));
    for (qsizetype i = 0; i < paths.size(); ++i)
        Log::raw(QStringLiteral("  ") + QString::number(i + 1) + QStringLiteral(". ") + paths.at(i));
    Log::raw(totalLabel + QString::number(paths.size()));
}

} // namespace

std::optional<QString> PairingAnalyzer::problemWithFolders(const QString& jpgFolder, const QString& rawFolder)
{
    if (jpgFolder.isEmpty() || rawFolder.isEmpty())
        return QStringLiteral("请先选择JPG和RAW文件夹");
    return std::nullopt;
}

std::vector<bool> PairingAnalyzer::matchRawNames(const QStringList& jpgNames, const QStringList& rawNames,
                                                 int* matchedJpgCount)
{
    QSet<QString> jpgStems;
    jpgStems.reserve(jpgNames.size());
    for (const QString& name : jpgNames)
        jpgStems.insert(PairingFileTypes::stem(name).toLower());

    QSet<QString> rawStems;
    rawStems.reserve(rawNames.size());
    std::vector<bool> matched(size_t(rawNames.size()), false);
    for (qsizetype i = 0; i < rawNames.size(); ++i) {
        QString stem = PairingFileTypes::stem(rawNames.at(i)).toLower();
        matched[size_t(i)] = jpgStems.contains(stem);
        if (matchedJpgCount)
            rawStems.insert(std::move(stem));
    }
    if (matchedJpgCount) {
        int count = 0;
        for (const QString& name : jpgNames)
            count += rawStems.contains(PairingFileTypes::stem(name).toLower()) ? 1 : 0;
        *matchedJpgCount = count;
    }
    return matched;
}

AnalysisResults PairingAnalyzer::analyze(const QString& jpgFolder, const QString& rawFolder)
{
    Log::raw(QStringLiteral("=== 开始分析文件夹 ==="));
    Log::raw(QStringLiteral("JPG文件夹路径: ") + jpgFolder);
    Log::raw(QStringLiteral("RAW文件夹路径: ") + rawFolder);

    const std::vector<ListedFile> jpgs = listFolder(jpgFolder, &PairingFileTypes::isJpgName);
    const std::vector<ListedFile> raws = listFolder(rawFolder, &PairingFileTypes::isRawName);

    AnalysisResults results;
    QStringList jpgNames;
    QStringList rawNames;
    jpgNames.reserve(qsizetype(jpgs.size()));
    rawNames.reserve(qsizetype(raws.size()));
    for (const ListedFile& file : jpgs) {
        jpgNames.append(file.name);
        results.jpgFiles.append(joinPath(jpgFolder, file.name));
        results.jpgTotalSize += file.size;
    }
    for (const ListedFile& file : raws) {
        rawNames.append(file.name);
        results.rawFiles.append(joinPath(rawFolder, file.name));
        results.rawTotalSize += file.size;
    }
    logList(QStringLiteral("JPG文件列表"), QStringLiteral("JPG文件总数: "), results.jpgFiles);
    logList(QStringLiteral("RAW文件列表"), QStringLiteral("RAW文件总数: "), results.rawFiles);

    Log::raw(QStringLiteral("=== 开始文件匹配 ==="));
    const std::vector<bool> matched = matchRawNames(jpgNames, rawNames, &results.matchedJpgCount);
    for (size_t i = 0; i < raws.size(); ++i) {
        const QString& path = results.rawFiles.at(qsizetype(i));
        if (matched[i]) {
            results.matchedFiles.append(path);
            results.matchedTotalSize += raws[i].size;
        } else {
            results.unmatchedFiles.append(path);
            results.unmatchedTotalSize += raws[i].size;
        }
    }

    Log::raw(QStringLiteral("=== 匹配结果统计 ==="));
    Log::raw(QStringLiteral("匹配的JPG文件: ") + QString::number(results.matchedJpgCount));
    Log::raw(QStringLiteral("匹配的RAW文件: ") + QString::number(results.matchedFiles.size()));
    Log::raw(QStringLiteral("不匹配的RAW文件: ") + QString::number(results.unmatchedFiles.size()));
    Log::raw(QStringLiteral("匹配文件总大小: ") + ByteCountFormatter::string(results.matchedTotalSize));
    Log::raw(QStringLiteral("不匹配文件总大小: ") + ByteCountFormatter::string(results.unmatchedTotalSize));
    Log::raw(QStringLiteral("=== 分析完成 ==="));
    results.isAnalyzed = true;
    return results;
}

} // namespace lumaro::cards
