// SPDX-License-Identifier: GPL-3.0-or-later
// Decoded thumbnails kept in memory, keyed by the picture's full path, at most 200 of them.
#pragma once

#include <QHash>
#include <QImage>
#include <QString>

#include <mutex>
#include <optional>

namespace lumaro::browse {

// Any thread may call it. A store into a full cache first evicts one entry, whichever the hash table yields
// first: not LRU, on purpose; any thumbnail can be decoded again, and the bound is what matters. Each lookup
// and store is timed; a summary line "PERF-SUMMARY-TCACHE: …" is logged every 200 operations.
class ThumbnailCache
{
public:
    static constexpr int maxCacheSize = 200;
    static constexpr int statPrintEvery = 200;

    struct Statistics
    {
        qint64 getCount = 0;
        double getMs = 0;
        qint64 setCount = 0;
        double setMs = 0;
    };

    static ThumbnailCache& shared();

    std::optional<QImage> image(const QString& key);
    // Whether a thumbnail is stored, without fetching it: a scheduler's question, so not counted as a lookup.
    bool contains(const QString& key) const;
    void setImage(const QImage& image, const QString& key);
    void clearFile(const QString& key);
    // Drops every entry whose key begins with `folderPath` as a plain string (so /p also clears /pq/…);
    // returns how many went.
    int clearFolder(const QString& folderPath);

    int count() const;
    Statistics statistics() const;

private:
    enum class Operation { get, set };
    void record(Operation operation, double milliseconds);

    mutable std::mutex m_mutex;
    QHash<QString, QImage> m_cache;

    mutable std::mutex m_statsMutex;
    Statistics m_stats;
};

} // namespace lumaro::browse
