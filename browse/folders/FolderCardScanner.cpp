// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/folders/FolderCardScanner.h"

#include "browse/state/FolderContents.h"
#include "browse/state/ImageAnnotation.h"
#include "platform/AppPaths.h"
#include "platform/ImageMetadata.h"
#include "platform/XattrTagStore.h"
#include "platform/files/FileStamp.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <algorithm>
#include <atomic>
#include <optional>
#include <thread>

namespace lumaro::browse {

namespace {

// Bumped when what a card holds, or how it is read, changes: older files are then read as empty.
constexpr int kCacheVersion = 2; // 2: the days pictures were taken
// Folders read between two batches handed to the caller.
constexpr int kBatchFolders = 16;

// Names and stamps of the folder's pictures; equal signatures mean nothing a card shows can differ.
QByteArray signatureOf(const QString& folder, const QStringList& names)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    const QDir dir(folder);
    for (const QString& name : names) {
        const auto stamp = platform::FileStamp::of(dir.filePath(name));
        hash.addData(name.toUtf8());
        const qint64 values[] = {stamp ? stamp->size : -1, stamp ? stamp->modifiedNs : 0,
                                 stamp ? stamp->changedNs : 0};
        hash.addData(QByteArrayView(reinterpret_cast<const char*>(values), sizeof values));
    }
    return hash.result().toHex();
}

qint64 takenAt(const QString& path)
{
    const QString exif = platform::ImageMetadata::read(path).captureTime;
    const QDateTime taken = QDateTime::fromString(exif, QStringLiteral("yyyy:MM:dd HH:mm:ss"));
    if (taken.isValid())
        return taken.toMSecsSinceEpoch();
    const auto stamp = platform::FileStamp::of(path);
    return stamp ? stamp->modifiedNs / 1000000 : 0;
}

QJsonObject toJson(const FolderCardCacheEntry& entry)
{
    QJsonObject colours;
    for (auto it = entry.card.colourCounts.cbegin(); it != entry.card.colourCounts.cend(); ++it)
        colours.insert(it.key(), it.value());
    QJsonObject days;
    for (auto it = entry.card.picturesByDay.cbegin(); it != entry.card.picturesByDay.cend(); ++it)
        days.insert(it.key().toString(Qt::ISODate), it.value());
    return {{QStringLiteral("signature"), QString::fromLatin1(entry.signature)},
            {QStringLiteral("count"), entry.card.pictureCount},
            {QStringLiteral("first"), entry.card.firstTaken},
            {QStringLiteral("last"), entry.card.lastTaken},
            {QStringLiteral("colours"), colours},
            {QStringLiteral("days"), days},
            {QStringLiteral("names"), QJsonArray::fromStringList(entry.card.names)}};
}

// nullopt for an entry that does not read back whole (a damaged or edited file): its folder is read again.
// The count is not taken from the file: the names are the pictures, and the scan checks them against the
// folder.
std::optional<FolderCardCacheEntry> fromJson(const QString& path, const QJsonObject& object)
{
    FolderCardCacheEntry entry;
    entry.signature = object.value(QStringLiteral("signature")).toString().toLatin1();
    entry.card.path = path;
    // toInteger, not a cast of toDouble: a double beyond qint64 does not convert (undefined behaviour).
    const qint64 first = object.value(QStringLiteral("first")).toInteger(-1);
    const qint64 last = object.value(QStringLiteral("last")).toInteger(-1);
    if (first < 0 || last < first)
        return std::nullopt;
    entry.card.firstTaken = first;
    entry.card.lastTaken = last;
    const QJsonObject colours = object.value(QStringLiteral("colours")).toObject();
    for (auto it = colours.begin(); it != colours.end(); ++it) {
        if (it.value().toInt(-1) < 0)
            return std::nullopt;
        entry.card.colourCounts.insert(it.key(), it.value().toInt());
    }
    const QJsonObject days = object.value(QStringLiteral("days")).toObject();
    for (auto it = days.begin(); it != days.end(); ++it) {
        const QDate day = QDate::fromString(it.key(), Qt::ISODate);
        if (!day.isValid() || it.value().toInt(-1) < 0)
            return std::nullopt;
        entry.card.picturesByDay.insert(day, it.value().toInt());
    }
    for (const QJsonValue& name : object.value(QStringLiteral("names")).toArray())
        entry.card.names << name.toString();
    entry.card.pictureCount = int(entry.card.names.size());
    return entry;
}

// Runs `work(i)` for i in [0, count) on up to `jobs` threads, this one among them.
void inParallel(int count, int jobs, const std::function<void(int)>& work)
{
    std::atomic<int> next{0};
    const auto worker = [&] {
        for (int i = next++; i < count; i = next++)
            work(i);
    };
    std::vector<std::thread> helpers;
    for (int j = 1; j < std::min(jobs, count); ++j)
        helpers.emplace_back(worker);
    worker();
    for (std::thread& helper : helpers)
        helper.join();
}

} // namespace

FolderCardScanner::FolderCardScanner(platform::FileTagStore* tags, QString cacheFolder)
    : m_tags(tags ? *tags : platform::XattrTagStore::shared()),
      m_cacheFolder(cacheFolder.isEmpty() ? platform::AppPaths::cacheDir() + QStringLiteral("/folder-cards")
                                          : std::move(cacheFolder))
{
}

QString FolderCardScanner::cacheFile(const QString& parent) const
{
    const QByteArray key =
        QCryptographicHash::hash(QDir::cleanPath(parent).toUtf8(), QCryptographicHash::Sha1);
    return m_cacheFolder + QLatin1Char('/') + QString::fromLatin1(key.toHex()) + QStringLiteral(".json");
}

FolderCard FolderCardScanner::read(const QString& folder, const QStringList& names) const
{
    FolderCard card;
    card.path = folder;
    card.names = names;
    card.pictureCount = int(names.size());
    const QDir dir(folder);
    for (const QString& name : names) {
        const QString path = dir.filePath(name);
        const qint64 taken = takenAt(path);
        if (taken > 0) {
            card.firstTaken = card.firstTaken == 0 ? taken : std::min(card.firstTaken, taken);
            card.lastTaken = std::max(card.lastTaken, taken);
            ++card.picturesByDay[QDateTime::fromMSecsSinceEpoch(taken).date()];
        }
        for (const QString& colour : annotationFromTags(m_tags.tags(path).value_or(QStringList())).colors)
            ++card.colourCounts[colour];
    }
    return card;
}

QHash<QString, FolderCardCacheEntry> FolderCardScanner::load(const QString& parent) const
{
    QFile file(cacheFile(parent));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject root = QJsonDocument::fromJson(file.readAll()).object();
    if (root.value(QStringLiteral("version")).toInt() != kCacheVersion ||
        root.value(QStringLiteral("parent")).toString() != QDir::cleanPath(parent))
        return {};
    QHash<QString, FolderCardCacheEntry> entries;
    const QJsonObject cards = root.value(QStringLiteral("cards")).toObject();
    const QDir dir(parent);
    for (auto it = cards.begin(); it != cards.end(); ++it) {
        if (auto entry = fromJson(dir.filePath(it.key()), it.value().toObject()))
            entries.insert(it.key(), std::move(*entry));
    }
    return entries;
}

void FolderCardScanner::save(const QString& parent, const QHash<QString, FolderCardCacheEntry>& entries) const
{
    if (!QDir().mkpath(m_cacheFolder))
        return; // a cache that cannot be written only costs time
    QJsonObject cards;
    for (auto it = entries.cbegin(); it != entries.cend(); ++it)
        cards.insert(it.key(), toJson(it.value()));
    QSaveFile file(cacheFile(parent));
    if (!file.open(QIODevice::WriteOnly))
        return;
    file.write(QJsonDocument(QJsonObject{{QStringLiteral("version"), kCacheVersion},
                                         {QStringLiteral("parent"), QDir::cleanPath(parent)},
                                         {QStringLiteral("cards"), cards}})
                   .toJson(QJsonDocument::Compact));
    file.commit();
}

QList<FolderCard> FolderCardScanner::scan(const QString& parent, const QStringList& subfolders,
                                          const std::function<bool(const QList<FolderCard>&)>& batch,
                                          int jobs)
{
    const QHash<QString, FolderCardCacheEntry> cached = load(parent);
    const int count = int(subfolders.size());
    QList<FolderCard> cards(count);
    QList<QStringList> names(count);
    QList<QByteArray> signatures(count);
    QList<int> misses;
    QList<FolderCard> hits;
    for (int i = 0; i < count; ++i) {
        const QString& folder = subfolders.at(i);
        const auto listed = FolderContents::read(folder);
        if (!listed) {
            cards[i].path = folder;
            cards[i].readable = false;
            hits << cards[i];
            continue;
        }
        names[i] = listed->pictures;
        signatures[i] = signatureOf(folder, names[i]);
        const auto found = cached.find(QDir(folder).dirName());
        if (found != cached.end() && found->signature == signatures[i] && found->card.names == names[i]) {
            cards[i] = found->card;
            cards[i].path = folder;
            hits << cards[i];
        } else {
            misses << i;
        }
    }
    bool goOn = !batch || hits.isEmpty() || batch(hits);
    for (qsizetype start = 0; goOn && start < misses.size(); start += kBatchFolders) {
        const QList<int> run = misses.mid(start, kBatchFolders);
        inParallel(int(run.size()), jobs,
                   [&](int k) { cards[run.at(k)] = read(subfolders.at(run.at(k)), names.at(run.at(k))); });
        QList<FolderCard> ready;
        for (const int i : run)
            ready << cards.at(i);
        goOn = !batch || batch(ready);
    }
    if (!misses.isEmpty() || cached.size() != count) {
        QHash<QString, FolderCardCacheEntry> entries;
        for (int i = 0; i < count; ++i) {
            if (cards.at(i).readable && !cards.at(i).path.isEmpty())
                entries.insert(QDir(subfolders.at(i)).dirName(), {signatures.at(i), cards.at(i)});
        }
        save(parent, entries);
    }
    return cards;
}

} // namespace lumaro::browse
