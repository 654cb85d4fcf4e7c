// SPDX-License-Identifier: GPL-3.0-or-later
#include "rolls/RollStore.h"

#include "platform/AppPaths.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <algorithm>

namespace lumaro::rolls {

namespace {

QString storePath()
{
    return platform::AppPaths::dataDir() + QStringLiteral("/rolls.json");
}

QJsonObject toJson(const PublishedRoll& roll)
{
    return {{QStringLiteral("name"), roll.name},
            {QStringLiteral("folder"), roll.folder},
            {QStringLiteral("target"), roll.target},
            {QStringLiteral("publishedAt"), roll.publishedAt.toString(Qt::ISODate)},
            {QStringLiteral("pictures"), roll.pictures},
            {QStringLiteral("bytes"), double(roll.bytes)},
            {QStringLiteral("link"), roll.link}};
}

PublishedRoll fromJson(const QJsonObject& json)
{
    PublishedRoll roll;
    roll.name = json.value(QStringLiteral("name")).toString();
    roll.folder = json.value(QStringLiteral("folder")).toString();
    roll.target = json.value(QStringLiteral("target")).toString();
    roll.publishedAt =
        QDateTime::fromString(json.value(QStringLiteral("publishedAt")).toString(), Qt::ISODate);
    // A count that is no whole number from 0 up (a damaged or edited record) reads as 0; toInteger, as a
    // double beyond qint64 does not convert (undefined behaviour).
    roll.pictures = std::max(json.value(QStringLiteral("pictures")).toInt(), 0);
    roll.bytes = std::max<qint64>(json.value(QStringLiteral("bytes")).toInteger(), 0);
    roll.link = json.value(QStringLiteral("link")).toString();
    return roll;
}

} // namespace

QList<PublishedRoll> RollStore::all()
{
    QFile file(storePath());
    QList<PublishedRoll> rolls;
    if (!file.open(QIODevice::ReadOnly))
        return rolls;
    // A damaged record file reads as no records; it is replaced only by the next successful publish.
    for (const QJsonValue& value : QJsonDocument::fromJson(file.readAll()).array()) {
        const PublishedRoll roll = fromJson(value.toObject());
        if (!roll.target.isEmpty())
            rolls.append(roll);
    }
    return rolls;
}

std::optional<PublishedRoll> RollStore::find(const QString& nameOrTarget)
{
    const QList<PublishedRoll> rolls = all();
    std::optional<PublishedRoll> byName;
    int named = 0;
    for (const PublishedRoll& roll : rolls) {
        if (roll.target == nameOrTarget)
            return roll;
        if (roll.name == nameOrTarget) {
            byName = roll;
            ++named;
        }
    }
    return named == 1 ? byName : std::nullopt;
}

bool RollStore::save(const PublishedRoll& roll, QString* error)
{
    QList<PublishedRoll> rolls = all();
    rolls.removeIf([&](const PublishedRoll& r) { return r.target == roll.target; });
    rolls.append(roll);
    return write(rolls, error);
}

bool RollStore::remove(const QString& target, QString* error)
{
    QList<PublishedRoll> rolls = all();
    rolls.removeIf([&](const PublishedRoll& r) { return r.target == target; });
    return write(rolls, error);
}

bool RollStore::write(const QList<PublishedRoll>& rolls, QString* error)
{
    QJsonArray array;
    for (const PublishedRoll& roll : rolls)
        array.append(toJson(roll));
    QDir().mkpath(platform::AppPaths::dataDir());
    QSaveFile file(storePath());
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(array).toJson()) < 0 || !file.commit()) {
        if (error)
            *error = file.errorString();
        return false;
    }
    return true;
}

} // namespace lumaro::rolls
