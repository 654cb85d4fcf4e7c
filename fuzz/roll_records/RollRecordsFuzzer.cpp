// SPDX-License-Identifier: GPL-3.0-or-later
// The records of published rolls and of storage accounts (rolls.json, accounts.json in the data folder), as a
// crash, a full disk or a hand edit may leave them: read, and a roll looked up by name.
#include "fuzz/FuzzScratch.h"
#include "platform/AppPaths.h"
#include "rolls/RollStore.h"
#include "rolls/StorageAccounts.h"

#include <QDir>
#include <QFile>

using namespace lumaro;

namespace {

void writeRecord(const QString& name, const QByteArray& bytes)
{
    QFile file(platform::AppPaths::dataDir() + QLatin1Char('/') + name);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(bytes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes = fuzz::bytesOf(data, size);
    QDir().mkpath(platform::AppPaths::dataDir());
    writeRecord(QStringLiteral("rolls.json"), bytes);
    writeRecord(QStringLiteral("accounts.json"), bytes);
    for (const rolls::PublishedRoll& roll : rolls::RollStore::all())
        (void)rolls::RollStore::find(roll.target);
    (void)rolls::StorageAccounts::all();
    return 0;
}
