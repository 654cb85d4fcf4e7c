// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/thumbnails/ThumbnailCache.h"

#include "platform/Log.h"

#include <chrono>

namespace lumaro::browse {

using platform::Log;

namespace {

class Stopwatch
{
public:
    double elapsedMs() const
    {
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - m_start).count();
    }

private:
    std::chrono::steady_clock::time_point m_start = std::chrono::steady_clock::now();
};

QString summaryLine(const ThumbnailCache::Statistics& s)
{
    const auto average = [](double sum, qint64 count) { return count > 0 ? sum / double(count) : 0.0; };
    return QString::asprintf("PERF-SUMMARY-TCACHE: get=%lld(avg=%.3f ms,sum=%.2f ms), set=%lld(avg=%.3f ms,sum=%.2f ms)",
                             static_cast<long long>(s.getCount), average(s.getMs, s.getCount), s.getMs,
                             static_cast<long long>(s.setCount), average(s.setMs, s.setCount), s.setMs);
}

} // namespace

ThumbnailCache& ThumbnailCache::shared()
{
    static ThumbnailCache cache;
    return cache;
}

std::optional<QImage> ThumbnailCache::image(const QString& key)
{
    const Stopwatch stopwatch;
    std::optional<QImage> found;
    {
        std::lock_guard lock(m_mutex);
        const auto it = m_cache.constFind(key);
        if (it != m_cache.constEnd())
            found = *it;
    }
    record(Operation::get, stopwatch.elapsedMs());
    return found;
}

bool ThumbnailCache::contains(const QString& key) const
{
    std::lock_guard lock(m_mutex);
    return m_cache.contains(key);
}

void ThumbnailCache::setImage(const QImage& image, const QString& key)
{
    const Stopwatch stopwatch;
    {
        std::lock_guard lock(m_mutex);
        // One eviction per store once full, even when the key is already present.
        if (m_cache.size() >= maxCacheSize)
            m_cache.erase(m_cache.begin());
        m_cache.insert(key, image);
    }
    record(Operation::set, stopwatch.elapsedMs());
}

void ThumbnailCache::clearFile(const QString& key)
{
    {
        std::lock_guard lock(m_mutex);
        m_cache.remove(key);
    }
    Log::line(QStringLiteral("ThumbnailCache"), QStringLiteral("清理文件缓存: ") + key);
}

int ThumbnailCache::clearFolder(const QString& folderPath)
{
    int removed = 0;
    {
        std::lock_guard lock(m_mutex);
        for (auto it = m_cache.begin(); it != m_cache.end();) {
            if (it.key().startsWith(folderPath)) {
                it = m_cache.erase(it);
                ++removed;
            } else {
                ++it;
            }
        }
    }
    Log::line(QStringLiteral("ThumbnailCache"),
              QStringLiteral("清理文件夹缓存: %1, 清理了 %2 个缓存项").arg(folderPath).arg(removed));
    return removed;
}

int ThumbnailCache::count() const
{
    std::lock_guard lock(m_mutex);
    return int(m_cache.size());
}

ThumbnailCache::Statistics ThumbnailCache::statistics() const
{
    std::lock_guard lock(m_statsMutex);
    return m_stats;
}

void ThumbnailCache::record(Operation operation, double milliseconds)
{
    std::optional<Statistics> due;
    {
        std::lock_guard lock(m_statsMutex);
        if (operation == Operation::get) {
            ++m_stats.getCount;
            m_stats.getMs += milliseconds;
        } else {
            ++m_stats.setCount;
            m_stats.setMs += milliseconds;
        }
        if ((m_stats.getCount + m_stats.setCount) % statPrintEvery == 0)
            due = m_stats;
    }
    // Logged outside the lock so a slow sink never holds up another thread's lookup.
    if (due)
        Log::raw(summaryLine(*due));
}

} // namespace lumaro::browse
