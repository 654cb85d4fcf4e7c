// SPDX-License-Identifier: GPL-3.0-or-later
// The remembered cards' database ("cards.db") as a crash, a full disk, a bad sector, another program or an
// older Lumaro may have left it. Either the store refuses it with a reason and leaves its bytes alone, or it
// works: a card remembered, an import begun and a file recorded read back the same after reopening.
//
// Input: the file's bytes; or "SQL\n" and statements that build the file (a layout of another program, a
// missing table, huge or mistyped values), run before the store opens it.
#include "fuzz/FuzzScratch.h"
#include "platform/volumes/RememberedCardStore.h"

#include <QFile>

#include <sqlite3.h>

using namespace lumaro;
using platform::RememberedCardStore;

namespace {

// The building statements may only build: nothing that reaches other files, and nothing that runs for long.
int onlyBuilding(void*, int action, const char*, const char*, const char*, const char*)
{
    return action == SQLITE_ATTACH || action == SQLITE_DETACH ? SQLITE_DENY : SQLITE_OK;
}

int tooLong(void* steps)
{
    return ++*static_cast<int*>(steps) > 2000;
}

void build(const QString& path, const QByteArray& script)
{
    if (script.contains('\0') || script.toLower().contains("vacuum"))
        return;
    sqlite3* db = nullptr;
    if (sqlite3_open_v2(QFile::encodeName(path).constData(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                        nullptr) == SQLITE_OK) {
        int steps = 0;
        sqlite3_set_authorizer(db, &onlyBuilding, nullptr);
        sqlite3_progress_handler(db, 1000, &tooLong, &steps);
        sqlite3_limit(db, SQLITE_LIMIT_LENGTH, 1 << 20);
        sqlite3_exec(db, script.constData(), nullptr, nullptr, nullptr);
    }
    sqlite3_close(db);
}

QByteArray bytesAt(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    fuzz::FuzzScratch::clear();
    const QByteArray input = fuzz::bytesOf(data, size);
    const QString path = fuzz::FuzzScratch::path(QStringLiteral("cards.db"));
    if (input.startsWith("SQL\n"))
        build(path, input.mid(4));
    else
        fuzz::FuzzScratch::write(QStringLiteral("cards.db"), input);
    const QByteArray before = bytesAt(path);

    platform::RememberedCard card;
    card.key = QStringLiteral("uuid:1234-ABCD");
    card.volumeLabel = QStringLiteral("EOS_DIGITAL");
    card.cameraModel = QStringLiteral("Canon EOS R6");
    const platform::CardFileIdentity file{QStringLiteral("DCIM/100CANON/IMG 0001 照片.JPG"), 8 << 20,
                                          1700000000000, QStringLiteral("2023:11:14 22:13:20")};
    const QString destination = QStringLiteral("/home/u/Pictures/roll01/JPG/IMG 0001 照片.JPG");
    std::optional<qint64> cardId;
    std::optional<qint64> importId;
    bool recorded = false;
    {
        RememberedCardStore store(path);
        QString error;
        if (!store.open(&error)) {
            fuzz::require(!error.isEmpty(), "a refused store says why");
            fuzz::require(bytesAt(path) == before, "a refused store is left as it was");
            return 0;
        }
        (void)store.cards();
        (void)store.card(card.key);
        cardId = store.remember(card);
        if (!cardId)
            return 0;
        (void)store.unfinishedImport(*cardId);
        (void)store.importedFileKeys(*cardId);
        importId = store.beginImport(*cardId, QStringLiteral("/home/u/Pictures/roll01"),
                                     QDateTime::fromMSecsSinceEpoch(1700000000000));
        if (!importId)
            return 0;
        recorded = store.recordFile(*importId, *cardId, file, destination);
    }
    if (!recorded)
        return 0;

    // What was written must be there for the next import.
    RememberedCardStore again(path);
    fuzz::require(again.open(), "a store that was written opens again");
    const auto remembered = again.card(card.key);
    fuzz::require(remembered && remembered->id == *cardId, "the card is remembered");
    fuzz::require(again.importedFileKeys(*cardId).contains(
                      RememberedCardStore::fileKey(file.pathOnCard, file.size, file.modifiedMs)),
                  "the copied file is remembered");
    fuzz::require(again.destinations(*importId).value(file.pathOnCard) == destination,
                  "the copy's place is remembered");
    const auto unfinished = again.unfinishedImport(*cardId);
    fuzz::require(unfinished && unfinished->id == *importId, "the import is found unfinished");
    return 0;
}
