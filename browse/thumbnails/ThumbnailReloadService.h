// SPDX-License-Identifier: GPL-3.0-or-later
// Turns "this file's thumbnail is stale" into one "ThumbnailNeedsReload" notification, at most one per file
// every 0.2 s, so a burst of requests (several views, a held key) reloads once.
#pragma once

#include "platform/Clock.h"

#include <QHash>
#include <QString>

#include <mutex>

namespace lumaro::platform {
class NotificationCenter;
}

namespace lumaro::browse {

// Callable from any thread. The check and the update of the last-post time are one step under a lock, so two
// threads asking for one path at the same moment post once; the post itself happens after the lock, on the
// caller's thread. A request inside the cooldown does nothing (no deferred post). Paths are plain strings:
// /a/b.jpg and /a/./b.jpg are different keys.
class ThumbnailReloadService
{
public:
    static constexpr double cooldownSeconds = 0.2;

    static ThumbnailReloadService& shared();
    explicit ThumbnailReloadService(platform::Clock clock = platform::systemClock(),
                                    platform::NotificationCenter* center = nullptr);

    // Returns whether a notification was posted.
    bool requestReload(const QString& path);

private:
    platform::Clock m_clock;
    platform::NotificationCenter& m_center;
    std::mutex m_mutex; // the serial guard of the map
    QHash<QString, double> m_lastPostTimeByPath;
};

} // namespace lumaro::browse
