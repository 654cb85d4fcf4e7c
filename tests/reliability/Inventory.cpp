// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/reliability/Inventory.h"

#include "tests/reliability/Specimen.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

namespace lumaro::testing {

namespace {

QByteArray readAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Files below `root`, leaving out `_index` folders and dot-folders below the root when `withIndex` is false.
QStringList filesBelow(const QString& root, bool withIndex)
{
    QStringList files;
    QDirIterator it(root, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString relative = path.mid(root.size() + 1);
        const QStringList parts = relative.split(QLatin1Char('/'));
        bool skip = false;
        for (qsizetype i = 0; i + 1 < parts.size(); ++i)
            skip = skip || parts.at(i).startsWith(QLatin1Char('.')) ||
                   (!withIndex && parts.at(i) == QStringLiteral("_index"));
        if (!skip)
            files.append(path);
    }
    files.sort();
    return files;
}

} // namespace

bool hasPictureSuffix(const QString& name)
{
    static const QStringList suffixes{QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("cr2"),
                                      QStringLiteral("png"), QStringLiteral("tif"),  QStringLiteral("heic")};
    return suffixes.contains(QFileInfo(name).suffix().toLower());
}

void Inventory::addOriginal(const QString& id, const QByteArray& bytes)
{
    m_payloads.insert(id, payloadOf(bytes));
}

void Inventory::addArea(const QString& area, const QString& root)
{
    m_areas.append({area, root});
}

QList<Instance> Inventory::scan() const
{
    QList<Instance> instances;
    for (const auto& [area, root] : m_areas) {
        for (const QString& path : filesBelow(root, false)) {
            if (!hasPictureSuffix(path))
                continue;
            const QByteArray bytes = readAll(path);
            Instance instance{area, path, identityIn(bytes).value_or(QString()), false};
            instance.intact = !instance.id.isEmpty() && m_payloads.contains(instance.id) &&
                              m_payloads.value(instance.id) == payloadOf(bytes);
            instances.append(instance);
        }
    }
    return instances;
}

QStringList Inventory::brokenJson() const
{
    QStringList broken;
    for (const auto& [area, root] : m_areas) {
        for (const QString& path : filesBelow(root, true)) {
            if (!path.endsWith(QStringLiteral(".json")))
                continue;
            QJsonParseError error;
            QJsonDocument::fromJson(readAll(path), &error);
            if (error.error != QJsonParseError::NoError)
                broken.append(path + QStringLiteral(": ") + error.errorString());
        }
    }
    return broken;
}

QMap<QString, QMap<QString, int>> Inventory::count(const QList<Instance>& instances)
{
    QMap<QString, QMap<QString, int>> counts;
    for (const Instance& instance : instances)
        ++counts[instance.area][instance.id];
    return counts;
}

QStringList Inventory::damaged(const QList<Instance>& instances)
{
    QStringList lines;
    for (const Instance& instance : instances) {
        if (!instance.intact)
            lines.append(instance.path + (instance.id.isEmpty() ? QStringLiteral(" (no identity)")
                                                                : QStringLiteral(" (picture data differs)")));
    }
    return lines;
}

} // namespace lumaro::testing
