// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/PairingAnalyzer.h"

#include "cards/ByteCountFormatter.h"
#include "cards/PairingFileTypes.h"
#include "platform/FolderFiles.h"
#include "platform/Log.h"

#include <algorithm>
#include <deque>
#include <functional>
#include <vector>

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

namespace {

// The matching key of a name is its stem lower-cased. Camera names are ASCII, and for them the key is the
// stem itself seen through ASCII lower-casing, so a hundred thousand names cost no allocation; any other name
// gets a key of its own from PairingFileTypes::matchingKey (one normal form, so that "café" typed on Linux
// pairs with the decomposed "café" macOS writes, then lower-cased), which is ASCII-lower already, so one hash
// and one comparison serve both.
class StemKeys
{
public:
    QStringView key(const QString& name)
    {
        const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
        const QStringView stem = QStringView(name).left(dot > 0 ? dot : name.size());
        const bool ascii = std::all_of(stem.begin(), stem.end(), [](QChar c) { return c.unicode() < 0x80; });
        if (ascii)
            return stem;
        m_lowered.push_back(PairingFileTypes::matchingKey(stem));
        return m_lowered.back();
    }

private:
    std::deque<QString> m_lowered;
};

char16_t asciiLower(char16_t c)
{
    return (c >= u'A' && c <= u'Z') ? char16_t(c + 32) : c;
}

struct KeyHash
{
    size_t operator()(QStringView key) const noexcept
    {
        quint64 hash = 1469598103934665603ULL;
        for (const QChar c : key) {
            hash ^= asciiLower(c.unicode());
            hash *= 1099511628211ULL;
        }
        return size_t(hash ^ (hash >> 29));
    }
};

struct KeyEqual
{
    bool operator()(QStringView a, QStringView b) const noexcept
    {
        if (a.size() != b.size())
            return false;
        for (qsizetype i = 0; i < a.size(); ++i) {
            if (asciiLower(a[i].unicode()) != asciiLower(b[i].unicode()))
                return false;
        }
        return true;
    }
};

// An open-addressing set of keys in one block: a node-per-key set spends most of its time in the allocator.
class KeySet
{
public:
    explicit KeySet(size_t expected)
    {
        size_t capacity = 16;
        while (capacity < expected * 2)
            capacity *= 2;
        m_slots.resize(capacity);
        m_used.resize(capacity, false);
    }

    void insert(QStringView key)
    {
        size_t slot = find(key);
        if (!m_used[slot]) {
            m_used[slot] = true;
            m_slots[slot] = key;
        }
    }

    bool contains(QStringView key) const { return m_used[find(key)]; }

private:
    size_t find(QStringView key) const
    {
        const size_t mask = m_slots.size() - 1;
        for (size_t slot = KeyHash()(key) & mask;; slot = (slot + 1) & mask) {
            if (!m_used[slot] || KeyEqual()(m_slots[slot], key))
                return slot;
        }
    }

    std::vector<QStringView> m_slots;
    std::vector<bool> m_used;
};

} // namespace

std::vector<bool> PairingAnalyzer::matchRawNames(const QStringList& jpgNames, const QStringList& rawNames,
                                                 int* matchedJpgCount)
{
    StemKeys keys;
    std::vector<QStringView> jpgKeys;
    jpgKeys.reserve(size_t(jpgNames.size()));
    KeySet jpgStems(size_t(jpgNames.size()));
    for (const QString& name : jpgNames) {
        jpgKeys.push_back(keys.key(name));
        jpgStems.insert(jpgKeys.back());
    }

    KeySet rawStems(matchedJpgCount ? size_t(rawNames.size()) : 0);
    std::vector<bool> matched(size_t(rawNames.size()), false);
    for (qsizetype i = 0; i < rawNames.size(); ++i) {
        const QStringView key = keys.key(rawNames.at(i));
        matched[size_t(i)] = jpgStems.contains(key);
        if (matchedJpgCount)
            rawStems.insert(key);
    }
    if (matchedJpgCount) {
        int count = 0;
        for (const QStringView key : jpgKeys)
            count += rawStems.contains(key) ? 1 : 0;
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
