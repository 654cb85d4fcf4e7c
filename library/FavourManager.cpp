// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/FavourManager.h"

#include "library/FavourCopier.h"
#include "library/FavouritesSchema.h"
#include "platform/Log.h"
#include "platform/NotificationCenter.h"
#include "platform/QSettingsStore.h"

#include <QDir>
#include <QFileInfo>
#include <QThreadPool>

namespace lumaro::library {

namespace {

const QString kTag = QString::fromUtf8(FavouritesSchema::favouritesLogTag);
const QString kNameIndex = QString::fromUtf8(FavouritesSchema::nameIndex);

void log(const QString& message)
{
    platform::Log::line(kTag, message);
}

// Values in the order of columns(): id, file_path, file_name, is_favour, favour_type, created_at, updated_at.
FavourRecord recordFrom(const QVariantList& values)
{
    FavourRecord record;
    record.id = values.at(0).toLongLong();
    record.filePath = values.at(1).toString();
    record.fileName = values.at(2).toString();
    record.isFavour = values.at(3).toLongLong() != 0;
    if (!values.at(4).isNull())
        record.favourType = favourTypeFromText(values.at(4).toString());
    record.createdAt = values.at(5).toDouble();
    record.updatedAt = values.at(6).toDouble();
    return record;
}

QVariant typeValue(const std::optional<FavourType>& type)
{
    return type ? QVariant(storedText(*type)) : QVariant();
}

} // namespace

FavourManager& FavourManager::shared()
{
    static FavourManager* manager = [] {
        auto* created = new FavourManager(platform::QSettingsStore::shared());
        // The window must not wait for a large RAW to be copied.
        created->setCopyRunner([](std::function<void()> copy) { QThreadPool::globalInstance()->start(std::move(copy)); });
        created->open();
        return created;
    }();
    return *manager;
}

FavourManager::FavourManager(const platform::SettingsStore& settings, platform::Clock clock, QObject* parent)
    : QObject(parent)
    , m_settings(settings)
    , m_clock(std::move(clock))
    , m_copyRunner([](std::function<void()> copy) { copy(); })
{
}

bool FavourManager::open(const QString& path, bool loadRecords)
{
    if (!m_dbManager.open(path))
        return false;
    return ensureTable() && (!loadRecords || loadAll());
}

void FavourManager::setDebugSQLEnabled(bool on)
{
    m_debugSQLEnabled = on;
    m_dbManager.setDebugSQLEnabled(on);
}

QString FavourManager::cleanedPath(const QString& path)
{
    if (path.isEmpty())
        return path;
    return QDir::cleanPath(QFileInfo(path).absoluteFilePath());
}

QString FavourManager::columns() const
{
    return QStringLiteral("SELECT id, file_path, file_name, is_favour, favour_type, created_at, updated_at FROM ")
           + m_tableName;
}

bool FavourManager::ensureTable()
{
    const auto existing = m_dbManager.query(QString::fromUtf8(FavouritesSchema::tableQuery), {m_tableName});
    if (existing && !existing->isEmpty()) {
        log(QString::fromUtf8(FavouritesSchema::tableExistsLog));
        ensureNameIndex();
        return true;
    }
    const QString create = QStringLiteral("CREATE TABLE IF NOT EXISTS ") + m_tableName
                           + QStringLiteral(" (\n    id INTEGER PRIMARY KEY AUTOINCREMENT,\n"
                                            "    file_path TEXT NOT NULL UNIQUE,\n    file_name TEXT NOT NULL,\n"
                                            "    is_favour INTEGER NOT NULL DEFAULT 0,\n    favour_type TEXT,\n"
                                            "    created_at REAL NOT NULL,\n    updated_at REAL NOT NULL\n);");
    if (!m_dbManager.execute(create)) {
        log(QStringLiteral("❌ 收藏表创建失败"));
        return false;
    }
    log(QStringLiteral("✅ 收藏表创建成功"));
    const std::pair<const char*, const char*> indexes[] = {
        {"CREATE INDEX IF NOT EXISTS idx_file_path ON ", " (file_path);"},
        {"CREATE INDEX IF NOT EXISTS idx_is_favour ON ", " (is_favour);"},
        {"CREATE INDEX IF NOT EXISTS idx_favour_type ON ", " (favour_type);"},
        {"CREATE INDEX IF NOT EXISTS idx_created_at ON ", " (created_at);"},
    };
    // The table works without its indexes, only slower; a failed index is reported and the rest still made.
    for (const auto& [head, tail] : indexes) {
        if (!m_dbManager.execute(QString::fromUtf8(head) + m_tableName + QString::fromUtf8(tail)))
            log(QStringLiteral("⚠️ 索引创建失败: ") + m_dbManager.lastError().message);
    }
    ensureNameIndex();
    return true;
}

void FavourManager::ensureNameIndex()
{
    // The same-name check after every update reads by file name: without this index each heart click reads
    // the whole table (4 ms at 50,000 records). Stores made before it existed get it on their next open.
    const auto existing = m_dbManager.query(QString::fromUtf8(FavouritesSchema::indexQuery), {kNameIndex});
    if (!existing || !existing->isEmpty())
        return;
    if (!m_dbManager.execute(QStringLiteral("CREATE INDEX IF NOT EXISTS ") + kNameIndex +
                             QStringLiteral(" ON ") + m_tableName + QStringLiteral(" (file_name);")))
        log(QStringLiteral("⚠️ 索引创建失败: ") + m_dbManager.lastError().message);
}

std::optional<QList<FavourRecord>> FavourManager::select(const QString& sql, const QVariantList& parameters)
{
    QList<FavourRecord> records;
    if (!m_dbManager.queryEach(sql, parameters, [&](const QVariantList& values) { records.append(recordFrom(values)); }))
        return std::nullopt;
    return records;
}

bool FavourManager::loadAll()
{
    auto loaded = select(columns() + QStringLiteral(" ORDER BY created_at DESC;"), {});
    if (!loaded)
        return false;
    m_records = std::move(*loaded);
    Q_EMIT recordsChanged();
    return true;
}

std::optional<QList<FavourRecord>> FavourManager::favourites()
{
    return select(columns() + QStringLiteral(" WHERE is_favour = 1 ORDER BY updated_at DESC;"), {});
}

bool FavourManager::forEachFavouritePath(const std::function<void(const QString& path)>& path)
{
    return m_dbManager.queryEach(QString::fromUtf8(FavouritesSchema::favouritePathsQuery), {},
                                 [&](const QVariantList& values) { path(values.constFirst().toString()); });
}

FavourResult FavourManager::find(const QString& path)
{
    const auto found = select(columns() + QStringLiteral(" WHERE file_path = ? AND file_path != '';"), {path});
    if (!found)
        return {};
    return {true, found->isEmpty() ? std::nullopt : std::optional(found->constFirst())};
}

FavourResult FavourManager::findStored(const QString& path)
{
    const auto found = select(columns() + QStringLiteral(" WHERE file_path = ?;"), {path});
    if (!found)
        return {};
    return {true, found->isEmpty() ? std::nullopt : std::optional(found->constFirst())};
}

std::optional<QList<QPair<qint64, QString>>> FavourManager::probe(const QString& path)
{
    const auto rows = m_dbManager.query(QStringLiteral("SELECT id, file_path FROM ") + m_tableName
                                            + QStringLiteral(" WHERE file_path = ? OR file_path = ?;"),
                                        {path, cleanedPath(path)});
    if (!rows)
        return std::nullopt;
    QList<QPair<qint64, QString>> found;
    for (const QVariantMap& row : *rows)
        found.append({row.value(QStringLiteral("id")).toLongLong(), row.value(QStringLiteral("file_path")).toString()});
    return found;
}

std::optional<int> FavourManager::audit()
{
    const auto rows = m_dbManager.query(QStringLiteral("SELECT COUNT(*) FROM ") + m_tableName
                                        + QStringLiteral(" WHERE file_path IS NULL OR file_path = '';"));
    if (!rows || rows->isEmpty())
        return std::nullopt;
    const int count = rows->constFirst().value(QStringLiteral("COUNT(*)")).toInt();
    log(QStringLiteral("📊 %1 条无效收藏记录（file_path 为空）").arg(count));
    return count;
}

std::optional<int> FavourManager::removeEmptyPathRecords()
{
    const auto all = select(columns() + QStringLiteral(" ORDER BY created_at DESC;"), {});
    if (!all)
        return std::nullopt;
    int removed = 0;
    for (const FavourRecord& record : *all) {
        if (record.filePath.isEmpty() && remove(record.id))
            ++removed;
    }
    return removed;
}

std::optional<FavourRecord> FavourManager::insertRow(const FavourRecord& record)
{
    const QString sql = QStringLiteral("INSERT INTO ") + m_tableName
                        + QStringLiteral(" (file_path, file_name, is_favour, favour_type, created_at, updated_at)\n"
                                         "VALUES (?, ?, ?, ?, ?, ?);");
    if (!m_dbManager.execute(sql, {record.filePath, record.fileName, record.isFavour ? 1 : 0,
                                   typeValue(record.favourType), record.createdAt, record.updatedAt})) {
        log(QStringLiteral("❌ [DB] 插入失败: %1 (%2)").arg(record.filePath, m_dbManager.lastError().message));
        return std::nullopt;
    }
    FavourRecord stored = record;
    stored.id = m_dbManager.lastInsertRowId();
    return stored;
}

bool FavourManager::updateRow(const FavourRecord& record, const QString& givenPath)
{
    // Rows under the other written form of this path, or with no path at all, would collide with or shadow the
    // row being written: they go first.
    const bool cleaned =
        m_dbManager.execute(QStringLiteral("DELETE FROM ") + m_tableName
                                + QStringLiteral(" WHERE file_path = ? AND id != ?;"),
                            {givenPath, record.id})
        && m_dbManager.execute(QStringLiteral("DELETE FROM ") + m_tableName
                                   + QStringLiteral(" WHERE (file_path = ? OR file_path = '') AND id != ?;"),
                               {record.filePath, record.id});
    const QString sql = QStringLiteral("UPDATE ") + m_tableName
                        + QStringLiteral("\nSET file_path = ?, file_name = ?, is_favour = ?, favour_type = ?, "
                                         "updated_at = ?\nWHERE id = ?;");
    if (!cleaned
        || !m_dbManager.execute(sql, {record.filePath, record.fileName, record.isFavour ? 1 : 0,
                                      typeValue(record.favourType), record.updatedAt, record.id})) {
        log(QStringLiteral("❌ [DB] 更新失败: %1 (%2)").arg(record.filePath, m_dbManager.lastError().message));
        return false;
    }
    log(QStringLiteral("✅ [DB] 更新成功: ") + record.filePath);
    checkSameName(record);
    return true;
}

void FavourManager::checkSameName(const FavourRecord& record)
{
    const auto rows = m_dbManager.query(QStringLiteral("SELECT id, file_path, is_favour, favour_type FROM ")
                                            + m_tableName + QStringLiteral(" WHERE file_name = ?;"),
                                        {record.fileName});
    if (!rows) {
        log(QStringLiteral("⚠️ [DB] 更新后查询失败: ") + m_dbManager.lastError().message);
        return;
    }
    log(QStringLiteral("📋 [DB] %1 条同名记录:").arg(rows->size()));
    log(QStringLiteral("   查询路径: ") + record.filePath);
    for (const QVariantMap& row : *rows) {
        log(QStringLiteral("   id=%1 file_path=%2 is_favour=%3 favour_type=%4")
                .arg(row.value(QStringLiteral("id")).toString(), row.value(QStringLiteral("file_path")).toString(),
                     row.value(QStringLiteral("is_favour")).toString(),
                     row.value(QStringLiteral("favour_type")).toString()));
    }
}

FavourResult FavourManager::insert(const FavourRecord& record)
{
    std::optional<FavourRecord> saved;
    if (!m_dbManager.inTransaction([&] { return (saved = insertRow(record)).has_value(); }))
        return {};
    applyToRecords(*saved, saved->filePath, false);
    announce(*saved);
    return {true, saved};
}

bool FavourManager::update(const FavourRecord& record)
{
    if (!m_dbManager.inTransaction([&] { return updateRow(record, record.filePath); }))
        return false;
    applyToRecords(record, record.filePath, true);
    announce(record);
    return true;
}

bool FavourManager::remove(qint64 id)
{
    if (!m_dbManager.execute(QStringLiteral("DELETE FROM ") + m_tableName + QStringLiteral(" WHERE id = ?;"), {id}))
        return false;
    FavourRecord gone;
    gone.id = id;
    for (qsizetype i = 0; i < m_records.size(); ++i) {
        if (m_records.at(i).id == id) {
            gone = m_records.takeAt(i);
            Q_EMIT recordsChanged();
            break;
        }
    }
    gone.isFavour = false;
    gone.favourType.reset();
    announce(gone);
    return true;
}

FavourResult FavourManager::change(const QString& path, const std::function<bool(FavourRecord&)>& apply,
                                   const std::function<std::optional<FavourRecord>()>& fresh, bool marksFavourite)
{
    if (path.isEmpty()) {
        log(QStringLiteral("❌ [DB] 更新失败: empty path"));
        return {};
    }
    const QString clean = cleanedPath(path);
    // The copy comes before the row: a process stopped in between leaves a copy that the next mark finds
    // (the copier never copies a picture twice), never a favourite without its copy. Every mark makes a
    // missing copy, so a run cut short completes when it is run again.
    if (marksFavourite) {
        const FavourCopier copier(m_settings);
        if (copier.isEnabled())
            m_copyRunner([copier, clean] { copier.copy(clean); });
    }
    const double now = m_clock();
    std::optional<FavourRecord> saved;
    bool wasStored = false;
    const bool ok = m_dbManager.inTransaction([&] {
        const auto rows = probe(path);
        if (!rows)
            return false;
        if (rows->isEmpty()) {
            auto record = fresh();
            if (!record)
                return true; // Nothing stored and nothing to store.
            record->filePath = clean;
            record->fileName = QFileInfo(clean).fileName();
            record->createdAt = record->updatedAt = now;
            return (saved = insertRow(*record)).has_value();
        }
        // Keep the row already in the cleaned form when both forms are stored; the other one is merged away.
        QString keeper = rows->constFirst().second;
        for (const auto& row : *rows) {
            if (row.second == clean)
                keeper = row.second;
        }
        const FavourResult found = findStored(keeper);
        if (!found.record)
            return false;
        FavourRecord record = *found.record;
        wasStored = true;
        apply(record);
        record.filePath = clean;
        record.fileName = QFileInfo(clean).fileName();
        record.updatedAt = now;
        if (!updateRow(record, path))
            return false;
        saved = record;
        return true;
    });
    if (!ok)
        return {};
    if (!saved)
        return {true, std::nullopt};
    applyToRecords(*saved, path, wasStored);
    announce(*saved);
    return {true, saved};
}

FavourResult FavourManager::setFavour(const QString& path, bool isFavour)
{
    return change(
        path, [isFavour](FavourRecord& record) { record.isFavour = isFavour; return true; },
        [isFavour]() -> std::optional<FavourRecord> {
            if (!isFavour)
                return std::nullopt;
            FavourRecord record;
            record.isFavour = true;
            return record;
        },
        isFavour);
}

FavourResult FavourManager::setType(const QString& path, std::optional<FavourType> type)
{
    const FavourResult result = change(
        path,
        [type](FavourRecord& record) {
            record.favourType = type;
            if (type)
                record.isFavour = true;
            return true;
        },
        [type]() -> std::optional<FavourRecord> {
            if (!type)
                return std::nullopt;
            FavourRecord record;
            record.isFavour = true;
            record.favourType = type;
            return record;
        },
        type.has_value());
    if (!type)
        log(result ? QStringLiteral("✅ 收藏类型已清除") : QStringLiteral("❌ 清除收藏类型失败"));
    return result;
}

void FavourManager::applyToRecords(const FavourRecord& saved, const QString& givenPath, bool mergedAway)
{
    // Mirror of the update's clean-up, so the list matches the table without reading it all again.
    m_records.removeIf([&](const FavourRecord& r) {
        return r.id == saved.id
               || (mergedAway && (r.filePath == givenPath || r.filePath == saved.filePath || r.filePath.isEmpty()));
    });
    qsizetype at = 0;
    while (at < m_records.size() && m_records.at(at).createdAt >= saved.createdAt)
        ++at;
    m_records.insert(at, saved);
    Q_EMIT recordsChanged();
}

void FavourManager::announce(const FavourRecord& record)
{
    platform::NotificationCenter::shared().post(
        platform::notifications::favourStateChanged,
        {{QStringLiteral("filePath"), record.filePath},
         {QStringLiteral("isFavour"), record.isFavour},
         {QStringLiteral("favourType"), record.favourType ? storedText(*record.favourType) : QString()}});
}

} // namespace lumaro::library
