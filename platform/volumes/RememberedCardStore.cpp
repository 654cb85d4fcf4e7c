// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/volumes/RememberedCardStore.h"

#include "platform/AppPaths.h"
#include "platform/Log.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStringList>

#include <sqlite3.h>

#include <cmath>
#include <functional>

namespace lumaro::platform {

namespace {

const char* const kSchema = R"(
CREATE TABLE IF NOT EXISTS cards (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    card_key TEXT NOT NULL UNIQUE,
    volume_uuid TEXT NOT NULL DEFAULT '',
    volume_label TEXT NOT NULL DEFAULT '',
    camera_make TEXT NOT NULL DEFAULT '',
    camera_model TEXT NOT NULL DEFAULT '',
    camera_serial TEXT NOT NULL DEFAULT '',
    first_import REAL,
    last_import REAL
);
CREATE TABLE IF NOT EXISTS imports (
    id INTEGER PRIMARY KEY AUTOINCREMENT,
    card_id INTEGER NOT NULL REFERENCES cards(id),
    roll TEXT NOT NULL,
    started_at REAL NOT NULL,
    finished_at REAL
);
CREATE TABLE IF NOT EXISTS imported_files (
    card_id INTEGER NOT NULL REFERENCES cards(id),
    path_on_card TEXT NOT NULL,
    size INTEGER NOT NULL,
    modified_ms INTEGER NOT NULL,
    capture_time TEXT NOT NULL DEFAULT '',
    import_id INTEGER NOT NULL REFERENCES imports(id),
    destination TEXT NOT NULL,
    PRIMARY KEY (card_id, path_on_card, size, modified_ms)
);
CREATE INDEX IF NOT EXISTS idx_imported_files_import ON imported_files (import_id);
)";

// One statement, finalised on every way out; binds text, integers, reals and NULL (an invalid date).
class Statement
{
public:
    Statement(sqlite3* db, const char* sql)
    {
        if (sqlite3_prepare_v2(db, sql, -1, &m_statement, nullptr) != SQLITE_OK)
            m_statement = nullptr;
    }
    ~Statement() { sqlite3_finalize(m_statement); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    bool isValid() const { return m_statement != nullptr; }
    Statement& bind(const QString& text)
    {
        const QByteArray utf8 = text.toUtf8();
        sqlite3_bind_text(m_statement, ++m_position, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
        return *this;
    }
    Statement& bind(qint64 number)
    {
        sqlite3_bind_int64(m_statement, ++m_position, number);
        return *this;
    }
    Statement& bind(const QDateTime& time)
    {
        if (time.isValid())
            sqlite3_bind_double(m_statement, ++m_position, double(time.toMSecsSinceEpoch()) / 1000.0);
        else
            sqlite3_bind_null(m_statement, ++m_position);
        return *this;
    }
    // Steps to the end, handing each row to `row`; false on any error.
    bool run(const std::function<void(sqlite3_stmt*)>& row = {})
    {
        if (!m_statement)
            return false;
        for (;;) {
            const int status = sqlite3_step(m_statement);
            if (status == SQLITE_DONE)
                return true;
            if (status != SQLITE_ROW)
                return false;
            if (row)
                row(m_statement);
        }
    }

private:
    sqlite3_stmt* m_statement = nullptr;
    int m_position = 0;
};

QString text(sqlite3_stmt* statement, int column)
{
    return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(statement, column)),
                             sqlite3_column_bytes(statement, column));
}

// A time that is no number, or is beyond any calendar (a damaged or hand-edited file), reads as no time.
QDateTime time(sqlite3_stmt* statement, int column)
{
    if (sqlite3_column_type(statement, column) == SQLITE_NULL)
        return {};
    const double seconds = sqlite3_column_double(statement, column);
    constexpr double tenThousandYears = 3.2e11;
    if (!(std::abs(seconds) < tenThousandYears))
        return {};
    return QDateTime::fromMSecsSinceEpoch(qint64(seconds * 1000.0));
}

RememberedCard cardFrom(sqlite3_stmt* row)
{
    RememberedCard card;
    card.id = sqlite3_column_int64(row, 0);
    card.key = text(row, 1);
    card.volumeUuid = text(row, 2);
    card.volumeLabel = text(row, 3);
    card.cameraMake = text(row, 4);
    card.cameraModel = text(row, 5);
    card.cameraSerial = text(row, 6);
    card.firstImport = time(row, 7);
    card.lastImport = time(row, 8);
    return card;
}

const char* const kRemember =
    "INSERT INTO cards (card_key, volume_uuid, volume_label, camera_make, camera_model, camera_serial) "
    "VALUES (?, ?, ?, ?, ?, ?) ON CONFLICT(card_key) DO UPDATE SET "
    "volume_label = excluded.volume_label, "
    "camera_make = CASE WHEN excluded.camera_make = '' THEN camera_make ELSE excluded.camera_make END, "
    "camera_model = CASE WHEN excluded.camera_model = '' THEN camera_model ELSE excluded.camera_model END, "
    "camera_serial = CASE WHEN excluded.camera_serial = '' THEN camera_serial "
    "ELSE excluded.camera_serial END;";

// What a file of another program, or one a crash or a hand cut short, shows: objects of its own (a trigger
// could drop what is recorded), or tables of ours without the columns and keys the statements rely on.
const char* const kForeignObjects =
    "SELECT type || ' ' || name FROM sqlite_master WHERE name NOT IN ('cards', 'imports', 'imported_files', "
    "'sqlite_sequence', 'idx_imported_files_import') AND name NOT LIKE 'sqlite_autoindex_%';";
const char* const kCardColumns = "SELECT id, card_key, volume_uuid, volume_label, camera_make, camera_model, "
                                 "camera_serial, first_import, last_import FROM cards";

// Statements that prepare only when a table of ours has the columns and keys the store relies on.
const struct
{
    const char* table;
    const char* probe;
} kLayoutProbes[] = {
    {"cards", kRemember},
    {"cards", "SELECT id, card_key, volume_uuid, volume_label, camera_make, camera_model, camera_serial, "
              "first_import, last_import FROM cards LIMIT 0;"},
    {"imports", "SELECT id, card_id, roll, started_at, finished_at FROM imports LIMIT 0;"},
    {"imported_files",
     "INSERT OR REPLACE INTO imported_files (card_id, path_on_card, size, modified_ms, capture_time, "
     "import_id, destination) SELECT 0, '', 0, 0, '', 0, '' WHERE 0 "
     "ON CONFLICT (card_id, path_on_card, size, modified_ms) DO NOTHING;"},
};

// Each column of `table` as "name type notnull default pk", in order: what a statement relies on beyond the
// column's name (a NOT NULL default on `finished_at` would make every import look finished).
QStringList columnsOf(sqlite3* db, const char* table)
{
    QStringList columns;
    Statement info(db, "SELECT name, type, \"notnull\", quote(dflt_value), pk FROM pragma_table_info(?);");
    info.bind(QString::fromLatin1(table)).run([&](sqlite3_stmt* row) {
        columns << QStringList{text(row, 0), text(row, 1), text(row, 2), text(row, 3), text(row, 4)}.join(
            u' ');
    });
    return columns;
}

// The columns of our tables as the schema makes them, read from a store made afresh in memory.
const QHash<QString, QStringList>& ourColumns()
{
    static const QHash<QString, QStringList> columns = [] {
        QHash<QString, QStringList> made;
        sqlite3* db = nullptr;
        if (sqlite3_open(":memory:", &db) == SQLITE_OK &&
            sqlite3_exec(db, kSchema, nullptr, nullptr, nullptr) == SQLITE_OK) {
            for (const char* table : {"cards", "imports", "imported_files"})
                made.insert(QString::fromLatin1(table), columnsOf(db, table));
        }
        sqlite3_close(db);
        return made;
    }();
    return columns;
}

} // namespace

RememberedCardStore::RememberedCardStore(QString path)
    : m_path(path.isEmpty() ? QDir(AppPaths::dataDir()).filePath(QStringLiteral("cards.db"))
                            : std::move(path))
{
}

RememberedCardStore::~RememberedCardStore()
{
    sqlite3_close(m_db);
}

bool RememberedCardStore::run(const char* sql)
{
    char* message = nullptr;
    if (sqlite3_exec(m_db, sql, nullptr, nullptr, &message) == SQLITE_OK)
        return true;
    m_error = QString::fromUtf8(message ? message : sqlite3_errmsg(m_db));
    sqlite3_free(message);
    return false;
}

bool RememberedCardStore::open(QString* error)
{
    const auto failed = [&](const QString& why) {
        m_error = why;
        Log::raw(QStringLiteral("❌ 无法打开存储卡记录: ") + why + QStringLiteral(" - ") + m_path);
        if (error)
            *error = why;
        sqlite3_close(m_db);
        m_db = nullptr;
        return false;
    };
    if (!QDir().mkpath(QFileInfo(m_path).absolutePath()))
        return failed(QStringLiteral("cannot create ") + QFileInfo(m_path).absolutePath());
    if (sqlite3_open_v2(QFile::encodeName(m_path).constData(), &m_db,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK)
        return failed(QString::fromUtf8(m_db ? sqlite3_errmsg(m_db) : "out of memory"));
    sqlite3_busy_timeout(m_db, 10000);
    // quick_check first: a damaged or foreign file is refused before anything is written into it.
    QString verdict;
    if (!Statement(m_db, "PRAGMA quick_check;").run([&](sqlite3_stmt* row) { verdict += text(row, 0); }))
        return failed(QString::fromUtf8(sqlite3_errmsg(m_db)));
    if (verdict != QLatin1String("ok"))
        return failed(QStringLiteral("the file is damaged: ") + verdict);
    const QString foreign = layoutProblem();
    if (!foreign.isEmpty())
        return failed(QStringLiteral("the file is not a card store of this app: ") + foreign);
    if (!run("PRAGMA foreign_keys = ON;") || !run("PRAGMA journal_mode = WAL;") ||
        !run("PRAGMA synchronous = NORMAL;") || !run(kSchema))
        return failed(m_error);
    return true;
}

QString RememberedCardStore::layoutProblem()
{
    QStringList foreign;
    if (!Statement(m_db, kForeignObjects).run([&](sqlite3_stmt* row) { foreign << text(row, 0); }))
        return QString::fromUtf8(sqlite3_errmsg(m_db));
    if (!foreign.isEmpty())
        return foreign.join(QStringLiteral(", "));
    // Tables that are missing are made afresh; nothing is written before the file is known to be ours.
    QString problem;
    for (const auto& [table, probe] : kLayoutProbes) {
        bool present = false;
        Statement exists(m_db, "SELECT 1 FROM sqlite_master WHERE type = 'table' AND name = ?;");
        exists.bind(QString::fromLatin1(table)).run([&](sqlite3_stmt*) { present = true; });
        if (problem.isEmpty() && present && !Statement(m_db, probe).isValid())
            problem = QString::fromUtf8(sqlite3_errmsg(m_db));
        if (problem.isEmpty() && present &&
            columnsOf(m_db, table) != ourColumns().value(QString::fromLatin1(table)))
            problem = QString::fromLatin1(table) + QStringLiteral(" has columns of another layout");
    }
    return problem;
}

std::optional<RememberedCard> RememberedCardStore::card(const QString& key)
{
    Statement select(m_db, QByteArray(QByteArray(kCardColumns) + " WHERE card_key = ?;").constData());
    std::optional<RememberedCard> found;
    if (!select.bind(key).run([&](sqlite3_stmt* row) { found = cardFrom(row); }))
        m_error = QString::fromUtf8(sqlite3_errmsg(m_db));
    return found;
}

QList<RememberedCard> RememberedCardStore::cards()
{
    QList<RememberedCard> all;
    Statement select(m_db, QByteArray(QByteArray(kCardColumns) + " ORDER BY last_import DESC;").constData());
    select.run([&](sqlite3_stmt* row) { all.append(cardFrom(row)); });
    return all;
}

std::optional<qint64> RememberedCardStore::remember(const RememberedCard& card)
{
    Statement upsert(m_db, kRemember);
    if (!upsert.bind(card.key)
             .bind(card.volumeUuid)
             .bind(card.volumeLabel)
             .bind(card.cameraMake)
             .bind(card.cameraModel)
             .bind(card.cameraSerial)
             .run()) {
        m_error = QString::fromUtf8(sqlite3_errmsg(m_db));
        return std::nullopt;
    }
    const auto stored = this->card(card.key);
    return stored ? std::optional<qint64>(stored->id) : std::nullopt;
}

QString RememberedCardStore::fileKey(const QString& pathOnCard, qint64 size, qint64 modifiedMs)
{
    return pathOnCard + QLatin1Char('\n') + QString::number(size) + QLatin1Char('\n') +
           QString::number(modifiedMs);
}

QSet<QString> RememberedCardStore::importedFileKeys(qint64 cardId)
{
    QSet<QString> keys;
    Statement select(m_db, "SELECT path_on_card, size, modified_ms FROM imported_files WHERE card_id = ?;");
    select.bind(cardId).run([&](sqlite3_stmt* row) {
        keys.insert(fileKey(text(row, 0), sqlite3_column_int64(row, 1), sqlite3_column_int64(row, 2)));
    });
    return keys;
}

std::optional<UnfinishedImport> RememberedCardStore::unfinishedImport(qint64 cardId)
{
    std::optional<UnfinishedImport> found;
    Statement select(m_db, "SELECT id, roll FROM imports WHERE card_id = ? AND finished_at IS NULL "
                           "ORDER BY id DESC LIMIT 1;");
    select.bind(cardId).run([&](sqlite3_stmt* row) {
        found = UnfinishedImport{sqlite3_column_int64(row, 0), text(row, 1)};
    });
    return found;
}

std::optional<qint64> RememberedCardStore::beginImport(qint64 cardId, const QString& roll,
                                                       const QDateTime& now)
{
    // An older import left unfinished is given up: its files stay remembered, its roll is not resumed any
    // more.
    Statement giveUp(
        m_db, "UPDATE imports SET finished_at = started_at WHERE card_id = ? AND finished_at IS NULL;");
    giveUp.bind(cardId).run();
    Statement insert(m_db, "INSERT INTO imports (card_id, roll, started_at) VALUES (?, ?, ?);");
    Statement first(m_db, "UPDATE cards SET first_import = ? WHERE id = ? AND first_import IS NULL;");
    if (!insert.bind(cardId).bind(roll).bind(now).run()) {
        m_error = QString::fromUtf8(sqlite3_errmsg(m_db));
        return std::nullopt;
    }
    const qint64 id = sqlite3_last_insert_rowid(m_db);
    first.bind(now).bind(cardId).run();
    return id;
}

bool RememberedCardStore::recordFile(qint64 importId, qint64 cardId, const CardFileIdentity& file,
                                     const QString& destination)
{
    Statement insert(m_db, "INSERT OR REPLACE INTO imported_files (card_id, path_on_card, size, modified_ms, "
                           "capture_time, import_id, destination) VALUES (?, ?, ?, ?, ?, ?, ?);");
    if (insert.bind(cardId)
            .bind(file.pathOnCard)
            .bind(file.size)
            .bind(file.modifiedMs)
            .bind(file.captureTime)
            .bind(importId)
            .bind(destination)
            .run())
        return true;
    m_error = QString::fromUtf8(sqlite3_errmsg(m_db));
    return false;
}

QHash<QString, QString> RememberedCardStore::destinations(qint64 importId)
{
    QHash<QString, QString> found;
    Statement select(m_db, "SELECT path_on_card, destination FROM imported_files WHERE import_id = ?;");
    select.bind(importId).run([&](sqlite3_stmt* row) { found.insert(text(row, 0), text(row, 1)); });
    return found;
}

bool RememberedCardStore::finishImport(qint64 importId, qint64 cardId, const QDateTime& now)
{
    Statement finish(m_db, "UPDATE imports SET finished_at = ? WHERE id = ?;");
    Statement last(m_db, "UPDATE cards SET last_import = ? WHERE id = ?;");
    if (finish.bind(now).bind(importId).run() && last.bind(now).bind(cardId).run())
        return true;
    m_error = QString::fromUtf8(sqlite3_errmsg(m_db));
    return false;
}

} // namespace lumaro::platform
