// SPDX-License-Identifier: GPL-3.0-or-later
#include "library/FavourManager.h"

#include "library/FavourCopier.h"
#include "library/FavouritesSchema.h"
#include "platform/files/FileNameCodec.h"
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

FavourRecord recordFrom(const FavourRow& row)
{
    FavourRecord record;
    record.id = row.id;
    record.filePath = platform::FileNameCodec::decode(QByteArray::fromStdString(row.filePath));
    record.fileName = platform::FileNameCodec::decode(QByteArray::fromStdString(row.fileName));
    record.isFavour = row.isFavour;
    if (row.favourType)
        record.favourType = favourTypeFromText(QString::fromStdString(*row.favourType));
    record.createdAt = row.createdAt;
    record.updatedAt = row.updatedAt;
    return record;
}

std::string bytesOf(const QString& path)
{
    return platform::FileNameCodec::encode(path).toStdString();
}

std::optional<std::string> storedTypeOf(const std::optional<FavourType>& type)
{
    return type ? std::optional(storedText(*type).toStdString()) : std::nullopt;
}

FavourRow rowFrom(const FavourRecord& record)
{
    return {record.id,
            bytesOf(record.filePath),
            bytesOf(record.fileName),
            record.isFavour,
            storedTypeOf(record.favourType),
            record.createdAt,
            record.updatedAt};
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
    , m_table(m_dbManager.session(), [](const std::string& message) { log(QString::fromStdString(message)); })
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

std::optional<QList<FavourRecord>> FavourManager::select(std::string_view clause, const QString& path)
{
    const auto rows = m_table.select(clause, path.isNull() ? StoreValues{} : StoreValues{bytesOf(path)});
    if (!rows)
        return std::nullopt;
    QList<FavourRecord> records;
    records.reserve(qsizetype(rows->size()));
    for (const FavourRow& row : *rows)
        records.append(recordFrom(row));
    return records;
}

bool FavourManager::loadAll()
{
    auto loaded = select("ORDER BY created_at DESC;");
    if (!loaded)
        return false;
    m_records = std::move(*loaded);
    Q_EMIT recordsChanged();
    return true;
}

std::optional<QList<FavourRecord>> FavourManager::favourites()
{
    return select(FavouritesSchema::favouritesClause);
}

bool FavourManager::forEachFavouritePath(const std::function<void(const QString& path)>& path)
{
    return m_dbManager.queryEach(QString::fromUtf8(FavouritesSchema::favouritePathsQuery), {},
                                 [&](const QVariantList& values) { path(values.constFirst().toString()); });
}

FavourResult FavourManager::find(const QString& path)
{
    const auto found = select("WHERE file_path = ? AND file_path != '';", path);
    if (!found)
        return {};
    return {true, found->isEmpty() ? std::nullopt : std::optional(found->constFirst())};
}

std::optional<int> FavourManager::audit()
{
    const auto rows = m_dbManager.query(QString::fromUtf8(FavouritesSchema::emptyPathCountQuery));
    if (!rows || rows->isEmpty())
        return std::nullopt;
    const int count = rows->constFirst().value(QStringLiteral("COUNT(*)")).toInt();
    log(QString::fromStdString(FavouritesSchema::emptyPathCountLog(count)));
    return count;
}

std::optional<int> FavourManager::removeEmptyPathRecords()
{
    const auto all = select("ORDER BY created_at DESC;");
    if (!all)
        return std::nullopt;
    int removed = 0;
    for (const FavourRecord& record : *all) {
        if (record.filePath.isEmpty() && remove(record.id))
            ++removed;
    }
    return removed;
}

FavourResult FavourManager::insert(const FavourRecord& record)
{
    std::optional<FavourRow> row;
    if (!m_dbManager.inTransaction([&] { return (row = m_table.insert(rowFrom(record))).has_value(); }))
        return {};
    FavourRecord saved = record;
    saved.id = row->id;
    applyToRecords(saved, saved.filePath, false);
    announce(saved);
    return {true, saved};
}

bool FavourManager::update(const FavourRecord& record)
{
    const FavourRow row = rowFrom(record);
    if (!m_dbManager.inTransaction([&] { return m_table.update(row, row.filePath); }))
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

FavourResult FavourManager::change(const QString& path, bool marksFavourite, const TableChange& write)
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
    const FavourTable::Change changed = write(bytesOf(path), bytesOf(clean), m_clock());
    if (!changed.ok)
        return {};
    if (!changed.saved)
        return {true, std::nullopt};
    const FavourRecord saved = recordFrom(*changed.saved);
    applyToRecords(saved, path, changed.wasStored);
    announce(saved);
    return {true, saved};
}

FavourResult FavourManager::setFavour(const QString& path, bool isFavour)
{
    return change(path, isFavour, [&](const std::string& given, const std::string& clean, double now) {
        return m_table.setFavour(given, clean, now, isFavour);
    });
}

FavourResult FavourManager::setType(const QString& path, std::optional<FavourType> type)
{
    const std::optional<std::string> stored = storedTypeOf(type);
    const FavourResult result =
        change(path, type.has_value(), [&](const std::string& given, const std::string& clean, double now) {
            return m_table.setType(given, clean, now, stored);
        });
    if (!type)
        log(QString::fromUtf8(result ? FavouritesSchema::typeClearedLog : FavouritesSchema::typeClearFailedLog));
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
