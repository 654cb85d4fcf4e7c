// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/RepertoireStore.h"

#include "platform/DirectoryLister.h"
#include "platform/Log.h"
#include "platform/files/FileNameCodec.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace lumaro::library {

namespace {

const QString kTag = QStringLiteral("RepertoireStore");

} // namespace

RepertoireStore::RepertoireStore(NameKey sameShot, platform::Clock clock)
    : m_db(QStringLiteral("repertoire.db")), m_sameShot(std::move(sameShot)), m_clock(std::move(clock))
{
}

QString RepertoireStore::cleanedPath(const QString& path)
{
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

bool RepertoireStore::open(const QString& path)
{
    return m_db.open(path) && ensureTables();
}

bool RepertoireStore::ensureTables()
{
    const auto found = m_db.query(
        QStringLiteral("SELECT name FROM sqlite_master WHERE type='table' AND name='bundle_items';"));
    if (!found)
        return false;
    if (!found->isEmpty())
        return true; // made by an earlier run: nothing to say
    return m_db.execute(QStringLiteral("CREATE TABLE IF NOT EXISTS bundles (\n"
                                       "    id INTEGER PRIMARY KEY AUTOINCREMENT,\n"
                                       "    name TEXT NOT NULL UNIQUE,\n"
                                       "    created_at REAL NOT NULL\n);")) &&
           m_db.execute(
               QStringLiteral("CREATE TABLE IF NOT EXISTS bundle_items (\n"
                              "    id INTEGER PRIMARY KEY AUTOINCREMENT,\n"
                              "    bundle_id INTEGER NOT NULL REFERENCES bundles(id) ON DELETE CASCADE,\n"
                              "    file_path TEXT NOT NULL,\n"
                              "    added_at REAL NOT NULL,\n"
                              "    UNIQUE (bundle_id, file_path)\n);"));
}

std::optional<QList<RepertoireBundle>> RepertoireStore::bundles()
{
    QList<RepertoireBundle> list;
    const bool ok = m_db.queryEach(
        QStringLiteral("SELECT b.id, b.name, b.created_at, COUNT(i.id) FROM bundles b "
                       "LEFT JOIN bundle_items i ON i.bundle_id = b.id GROUP BY b.id ORDER BY b.name;"),
        {}, [&](const QVariantList& values) {
            list.append({values.at(0).toLongLong(), values.at(1).toString(), values.at(2).toDouble(),
                         values.at(3).toInt()});
        });
    return ok ? std::optional(list) : std::nullopt;
}

std::optional<RepertoireBundle> RepertoireStore::bundle(const QString& name)
{
    const auto all = bundles();
    if (!all)
        return std::nullopt;
    for (const RepertoireBundle& bundle : *all) {
        if (bundle.name == name)
            return bundle;
    }
    return std::nullopt;
}

std::optional<QString> RepertoireStore::create(const QString& name)
{
    const QString trimmed = name.trimmed();
    if (trimmed.isEmpty())
        return QStringLiteral("合集名称不能为空");
    if (bundle(trimmed))
        return QStringLiteral("已有同名合集: ") + trimmed;
    if (!m_db.execute(QStringLiteral("INSERT INTO bundles (name, created_at) VALUES (?, ?);"),
                      {trimmed, m_clock()}))
        return QStringLiteral("无法保存合集: ") + m_db.lastError().message;
    platform::Log::line(kTag, QStringLiteral("✅ 新建合集: ") + trimmed);
    return std::nullopt;
}

std::optional<QString> RepertoireStore::rename(const QString& name, const QString& newName)
{
    const auto found = bundle(name);
    if (!found)
        return QStringLiteral("没有这个合集: ") + name;
    const QString trimmed = newName.trimmed();
    if (trimmed.isEmpty())
        return QStringLiteral("合集名称不能为空");
    if (trimmed != name && bundle(trimmed))
        return QStringLiteral("已有同名合集: ") + trimmed;
    if (!m_db.execute(QStringLiteral("UPDATE bundles SET name = ? WHERE id = ?;"), {trimmed, found->id}))
        return QStringLiteral("无法保存合集: ") + m_db.lastError().message;
    return std::nullopt;
}

std::optional<QString> RepertoireStore::drop(const QString& name)
{
    const auto found = bundle(name);
    if (!found)
        return QStringLiteral("没有这个合集: ") + name;
    if (!m_db.execute(QStringLiteral("DELETE FROM bundles WHERE id = ?;"), {found->id}))
        return QStringLiteral("无法删除合集: ") + m_db.lastError().message;
    return std::nullopt;
}

std::optional<int> RepertoireStore::add(const QString& bundleName, const QStringList& paths)
{
    const auto found = bundle(bundleName);
    if (!found)
        return std::nullopt;
    int added = 0;
    const bool ok = m_db.inTransaction([&] {
        added = 0;
        for (const QString& path : paths) {
            const auto before = m_db.query(
                QStringLiteral("SELECT id FROM bundle_items WHERE bundle_id = ? AND file_path = ?;"),
                {found->id, cleanedPath(path)});
            if (!before)
                return false;
            if (!before->isEmpty())
                continue;
            if (!m_db.execute(
                    QStringLiteral(
                        "INSERT INTO bundle_items (bundle_id, file_path, added_at) VALUES (?, ?, ?);"),
                    {found->id, cleanedPath(path), m_clock()}))
                return false;
            ++added;
        }
        return true;
    });
    return ok ? std::optional(added) : std::nullopt;
}

std::optional<int> RepertoireStore::remove(const QString& bundleName, const QStringList& paths)
{
    const auto found = bundle(bundleName);
    if (!found)
        return std::nullopt;
    int removed = 0;
    const bool ok = m_db.inTransaction([&] {
        removed = 0;
        for (const QString& path : paths) {
            const auto rows = m_db.query(
                QStringLiteral("SELECT id FROM bundle_items WHERE bundle_id = ? AND file_path = ?;"),
                {found->id, cleanedPath(path)});
            if (!rows)
                return false;
            for (const auto& row : *rows) {
                if (!m_db.execute(QStringLiteral("DELETE FROM bundle_items WHERE id = ?;"),
                                  {row.value(QStringLiteral("id"))}))
                    return false;
                ++removed;
            }
        }
        return true;
    });
    return ok ? std::optional(removed) : std::nullopt;
}

QString RepertoireStore::follow(const QString& path) const
{
    if (!m_sameShot)
        return {};
    const QFileInfo info(path);
    const QString key = m_sameShot(info.fileName());
    const auto entries = platform::DirectoryLister::listVisible(info.absolutePath());
    if (!entries)
        return {};
    QString match;
    for (const platform::DirectoryEntry& entry : *entries) {
        const QString name = entry.name();
        if (entry.kind != platform::DirectoryEntry::Kind::file || name == info.fileName() ||
            m_sameShot(name) != key)
            continue;
        if (!match.isEmpty())
            return {}; // two candidates: which one is ours cannot be told
        match = QDir(info.absolutePath()).filePath(name);
    }
    return match;
}

std::optional<QList<RepertoireItem>> RepertoireStore::items(const QString& bundleName)
{
    const auto found = bundle(bundleName);
    if (!found)
        return std::nullopt;
    struct Row
    {
        qint64 id;
        RepertoireItem item;
    };
    QList<Row> rows;
    if (!m_db.queryEach(QStringLiteral("SELECT id, file_path, added_at FROM bundle_items WHERE bundle_id = ? "
                                       "ORDER BY added_at, id;"),
                        {found->id}, [&](const QVariantList& values) {
                            rows.append({values.at(0).toLongLong(),
                                         {values.at(1).toString(), values.at(2).toDouble(), true}});
                        }))
        return std::nullopt;
    QSet<QString> paths;
    for (const Row& row : rows)
        paths.insert(row.item.filePath);
    QList<RepertoireItem> items;
    for (Row& row : rows) {
        if (platform::FileNameCodec::exists(row.item.filePath)) {
            items.append(row.item);
            continue;
        }
        const QString moved = follow(row.item.filePath);
        if (moved.isEmpty()) {
            row.item.isPresent = false; // gone from where we knew it: shown as missing, never dropped
            items.append(row.item);
            continue;
        }
        if (paths.contains(moved))
            continue; // the same picture is in the bundle under its new name already
        if (m_db.execute(QStringLiteral("UPDATE bundle_items SET file_path = ? WHERE id = ?;"),
                         {moved, row.id})) {
            platform::Log::line(kTag,
                                QStringLiteral("合集图片已改名: %1 -> %2").arg(row.item.filePath, moved));
            paths.insert(moved);
            row.item.filePath = moved;
        } else {
            row.item.isPresent = false;
        }
        items.append(row.item);
    }
    return items;
}

} // namespace lumaro::library
