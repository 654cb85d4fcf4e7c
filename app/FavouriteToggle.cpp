// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FavouriteToggle.h"

#include "library/FavourManager.h"
#include "platform/Log.h"
#include "platform/NotificationCenter.h"

namespace lumaro::app {

namespace {

const QString kTag = QStringLiteral("FavouriteToggle");

} // namespace

FavouriteToggle::FavouriteToggle(library::FavourManager& manager, QObject* parent)
    : QObject(parent)
    , m_manager(manager)
{
    m_marks.reserve(m_manager.records().size());
    for (const library::FavourRecord& record : m_manager.records()) {
        if (!record.filePath.isEmpty())
            m_marks.insert(record.filePath, {record.isFavour, record.favourType});
    }
    // One picture per notice, so a store of 50,000 favourites is not walked again on every click.
    connect(&platform::NotificationCenter::shared(), &platform::NotificationCenter::posted, this,
            &FavouriteToggle::storeChanged);
}

void FavouriteToggle::storeChanged(const QString& name, const QVariantMap& info)
{
    if (name != platform::notifications::favourStateChanged)
        return;
    const QString path = info.value(QStringLiteral("filePath")).toString();
    if (path.isEmpty())
        return;
    remember(path, {info.value(QStringLiteral("isFavour")).toBool(),
                    library::favourTypeFromText(info.value(QStringLiteral("favourType")).toString())});
}

void FavouriteToggle::learn(const library::FavourRecord& record)
{
    if (!record.filePath.isEmpty())
        remember(record.filePath, {record.isFavour, record.favourType});
}

void FavouriteToggle::remember(const QString& path, const Mark& stored)
{
    const auto known = m_marks.constFind(path);
    if (known != m_marks.cend() && *known == stored)
        return;
    m_marks.insert(path, stored);
    Q_EMIT markChanged(path);
}

FavouriteToggle::Mark FavouriteToggle::mark(const QString& path) const
{
    return m_marks.value(library::FavourManager::cleanedPath(path));
}

bool FavouriteToggle::flip(const QString& path, const Mark& optimistic,
                           const std::function<library::FavourResult()>& save, const QString& rollbackLine)
{
    const QString key = library::FavourManager::cleanedPath(path);
    const bool hadMark = m_marks.contains(key);
    const Mark before = m_marks.value(key);
    m_marks.insert(key, optimistic);
    Q_EMIT markChanged(key);
    if (save())
        return true;
    if (hadMark)
        m_marks.insert(key, before);
    else
        m_marks.remove(key);
    if (!rollbackLine.isEmpty())
        platform::Log::line(kTag, rollbackLine);
    Q_EMIT markChanged(key);
    return false;
}

bool FavouriteToggle::toggleHeart(const QString& path)
{
    Mark next = mark(path);
    next.isFavour = !next.isFavour;
    platform::Log::line(kTag, QStringLiteral("❤️ [btn-left] 切换收藏: ") + path);
    return flip(
        path, next, [&] { return m_manager.setFavour(path, next.isFavour); },
        QStringLiteral("❌ [btn-left] 保存收藏状态失败，回滚状态: ") + path);
}

bool FavouriteToggle::chooseType(const QString& path, library::FavourType type)
{
    platform::Log::line(kTag, QStringLiteral("🏷️ [btn-middle] 选择类型: ") + library::storedText(type));
    return flip(
        path, {true, type}, [&] { return m_manager.setType(path, type); }, {});
}

bool FavouriteToggle::clearType(const QString& path)
{
    Mark next = mark(path);
    next.type.reset();
    platform::Log::line(kTag, QStringLiteral("🏷️ [btn-middle] 清除类型: ") + path);
    return flip(
        path, next, [&] { return m_manager.setType(path, std::nullopt); }, {});
}

} // namespace lumaro::app
