// SPDX-License-Identifier: GPL-3.0-or-later
// The memory cards imported before, and every file taken from each, kept in a small SQLite file of the app's
// own.
#pragma once

#include <QDateTime>
#include <QHash>
#include <QList>
#include <QSet>
#include <QString>

#include <optional>

struct sqlite3;

namespace lumaro::platform {

struct RememberedCard
{
    qint64 id = 0;
    QString key; // VolumeIdentity::key()
    QString volumeUuid;
    QString volumeLabel;
    QString cameraMake;
    QString cameraModel;
    QString cameraSerial;
    QDateTime firstImport; // invalid until a first import began
    QDateTime lastImport;  // invalid until an import finished
};

// What tells one file on a card from another: cameras reuse names, so the size and time go with the path.
struct CardFileIdentity
{
    QString pathOnCard; // relative to the card's root, '/'-separated
    qint64 size = 0;
    qint64 modifiedMs = 0; // milliseconds since the epoch
    QString captureTime;   // the EXIF capture time as written, or empty
};

struct UnfinishedImport
{
    qint64 id = 0;
    QString roll; // the roll folder it was copying into
};

// One connection, used from one thread at a time. Each recorded file is committed on its own, so a crash or a
// kill in the middle of an import loses at most the file being copied; the import stays unfinished until
// finishImport() and is found again by unfinishedImport(). Another process writing at the same time is waited
// for (busy time-out). A file that is not a database, is damaged or holds another layout makes open() fail
// with the reason and is left untouched.
class RememberedCardStore
{
public:
    // The file "cards.db" in the app's data folder when `path` is empty.
    explicit RememberedCardStore(QString path = {});
    ~RememberedCardStore();
    RememberedCardStore(const RememberedCardStore&) = delete;
    RememberedCardStore& operator=(const RememberedCardStore&) = delete;

    bool open(QString* error = nullptr);
    QString path() const { return m_path; }

    std::optional<RememberedCard> card(const QString& key);
    QList<RememberedCard> cards();
    // Adds the card, or updates its label and camera (first import time kept); returns its id.
    std::optional<qint64> remember(const RememberedCard& card);

    // Every file imported from the card before, as fileKey() strings.
    QSet<QString> importedFileKeys(qint64 cardId);
    static QString fileKey(const QString& pathOnCard, qint64 size, qint64 modifiedMs);

    std::optional<UnfinishedImport> unfinishedImport(qint64 cardId);
    std::optional<qint64> beginImport(qint64 cardId, const QString& roll, const QDateTime& now);
    // Remembers that `file` was copied to `destination` by this import (a re-import replaces the older
    // record).
    bool recordFile(qint64 importId, qint64 cardId, const CardFileIdentity& file, const QString& destination);
    // The files an import recorded: path on the card -> destination path.
    QHash<QString, QString> destinations(qint64 importId);
    bool finishImport(qint64 importId, qint64 cardId, const QDateTime& now);

    QString lastError() const { return m_error; }

private:
    bool run(const char* sql);
    // Empty when the file holds only this store's tables, with their columns and keys; else what is wrong.
    QString layoutProblem();

    QString m_path;
    sqlite3* m_db = nullptr;
    QString m_error;
};

} // namespace lumaro::platform
