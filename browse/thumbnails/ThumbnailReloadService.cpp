// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/thumbnails/ThumbnailReloadService.h"

#include "platform/NotificationCenter.h"

namespace lumaro::browse {

ThumbnailReloadService& ThumbnailReloadService::shared()
{
    static ThumbnailReloadService service;
    return service;
}

ThumbnailReloadService::ThumbnailReloadService(platform::Clock clock, platform::NotificationCenter* center)
    : m_clock(std::move(clock))
    , m_center(center ? *center : platform::NotificationCenter::shared())
{
}

bool ThumbnailReloadService::requestReload(const QString& path)
{
    const double now = m_clock();
    bool due = false;
    {
        std::lock_guard lock(m_mutex);
        const double last = m_lastPostTimeByPath.value(path, 0.0);
        if (now - last >= cooldownSeconds) {
            m_lastPostTimeByPath.insert(path, now);
            due = true;
        }
    }
    if (due)
        m_center.post(platform::notifications::thumbnailNeedsReload, {{QStringLiteral("filePath"), path}});
    return due;
}

} // namespace lumaro::browse
