// SPDX-License-Identifier: GPL-3.0-or-later
// The favourite marks of the pictures on screen, flipped at once on a click and rolled back when saving fails.
#pragma once

#include "library/FavourType.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <optional>

namespace lumaro::library {
class FavourManager;
struct FavourRecord;
struct FavourResult;
} // namespace lumaro::library

namespace lumaro::app {

// Main thread only. A tile reads mark(path) when it paints and calls toggleHeart / chooseType / clearType on a
// click; markChanged(path) is emitted when the mark flips (before saving) and again if it has to flip back.
// Paths are compared in their cleaned absolute form, as the store keeps them. Changes made elsewhere (another
// view, the "已收藏" panel) arrive through "FavourStateChanged" and are picked up here.
class FavouriteToggle : public QObject
{
    Q_OBJECT
public:
    struct Mark
    {
        bool isFavour = false;
        std::optional<library::FavourType> type;
        bool operator==(const Mark&) const = default;
    };

    explicit FavouriteToggle(library::FavourManager& manager, QObject* parent = nullptr);

    Mark mark(const QString& path) const;
    // The mark as read from the store just now: another window or `lumaro-cli fav` may have changed it
    // since this view last heard.
    void learn(const library::FavourRecord& record);
    // Each returns whether the change was saved; on false the mark is back to what it was.
    bool toggleHeart(const QString& path);
    bool chooseType(const QString& path, library::FavourType type);
    bool clearType(const QString& path);

Q_SIGNALS:
    void markChanged(const QString& path);

private:
    bool flip(const QString& path, const Mark& optimistic, const std::function<library::FavourResult()>& save,
              const QString& rollbackLine);
    void storeChanged(const QString& name, const QVariantMap& info);
    void remember(const QString& path, const Mark& stored);

    library::FavourManager& m_manager;
    QHash<QString, Mark> m_marks;
};

} // namespace lumaro::app
