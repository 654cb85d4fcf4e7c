// SPDX-License-Identifier: GPL-3.0-or-later
// Application-wide named notifications ("ThumbnailNeedsReload", "VisionIndexDidUpdate", "FavourStateChanged").
#pragma once

#include <QObject>
#include <QString>
#include <QVariantMap>

namespace lumaro::platform {

// post() may be called from any thread; it emits posted() on the caller's thread. An observer connects to
// posted() with a context object, so Qt delivers the call on the observer's own thread (queued when that
// differs from the poster's), which is how a view hops to the main thread.
class NotificationCenter : public QObject
{
    Q_OBJECT
public:
    static NotificationCenter& shared();

    void post(const QString& name, const QVariantMap& userInfo = {});

Q_SIGNALS:
    void posted(const QString& name, const QVariantMap& userInfo);
};

namespace notifications {
inline const QString thumbnailNeedsReload = QStringLiteral("ThumbnailNeedsReload");
inline const QString visionIndexDidUpdate = QStringLiteral("VisionIndexDidUpdate");
inline const QString favourStateChanged = QStringLiteral("FavourStateChanged");
} // namespace notifications

} // namespace lumaro::platform
