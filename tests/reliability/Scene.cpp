// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/reliability/Scene.h"

#include "tests/reliability/Specimen.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::testing {

namespace {

QString orInside(const QString& given, const QString& root, const char* name)
{
    return given.isEmpty() ? root + QLatin1Char('/') + QLatin1String(name) : given;
}

} // namespace

Scene::Scene(const Layout& layout)
    : m_layout{orInside(layout.card, m_dir.path(), "card"), orInside(layout.shoot, m_dir.path(), "shoot"),
               orInside(layout.raw, m_dir.path(), "raw"), orInside(layout.imports, m_dir.path(), "imports")},
      m_cli(m_dir.path() + QStringLiteral("/sandbox"))
{
    for (const QString& folder : {shoot(), raw(), card(), imports()})
        QDir().mkpath(folder);
    m_inventory.addArea(QStringLiteral("shoot"), shoot());
    m_inventory.addArea(QStringLiteral("raw"), raw());
    m_inventory.addArea(QStringLiteral("pick"), rawPick());
    m_inventory.addArea(QStringLiteral("card"), card());
    m_inventory.addArea(QStringLiteral("cardTrash"), card() + QStringLiteral("/.Trash-0/files"));
    m_inventory.addArea(QStringLiteral("imports"), imports());
    m_inventory.addArea(QStringLiteral("trash"), m_cli.homeTrashFiles());
    m_inventory.addArea(QStringLiteral("favourites"), favouriteCopies());
}

QString Scene::rawPick() const
{
    return QFileInfo(raw()).path() + QStringLiteral("/RAW_PICK");
}

QString Scene::add(const QString& folder, const QString& name, const QString& id, const QByteArray& bytes)
{
    const QString path = folder + QLatin1Char('/') + name;
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        return {};
    m_inventory.addOriginal(id, bytes);
    m_ids.append(id);
    return path;
}

QString Scene::addJpeg(const QString& folder, const QString& name, const QString& id)
{
    return add(folder, name, id, jpegWithIdentity(id, m_shade++));
}

QString Scene::addRaw(const QString& folder, const QString& name, const QString& id, int size)
{
    QByteArray bytes = rawWithIdentity(id);
    if (size > bytes.size())
        bytes.append(QByteArray(size - bytes.size(), 'r'));
    return add(folder, name, id, bytes);
}

void Scene::writeVisionIndex(const QStringList& names, const QString& mark, const QString& folder)
{
    const QString target = folder.isEmpty() ? shoot() : folder;
    QJsonArray results;
    for (const QString& name : names)
        results.append(QJsonObject{{QStringLiteral("fileName"), name},
                                   {QStringLiteral("classification"), mark},
                                   {QStringLiteral("objects"), QJsonArray{}}});
    const QJsonObject index{{QStringLiteral("generatedAt"), QStringLiteral("2024-01-01T10:00:00Z")},
                            {QStringLiteral("sourceFolderPath"), target},
                            {QStringLiteral("results"), results}};
    QDir().mkpath(target + QStringLiteral("/_index"));
    QFile file(target + QStringLiteral("/_index/vision_index_20240101_100000_test.json"));
    if (file.open(QIODevice::WriteOnly))
        file.write(QJsonDocument(index).toJson());
}

void Scene::fillCard(int count, int rawSize)
{
    QDir().mkpath(card() + QStringLiteral("/MISC"));
    QDir().mkpath(card() + QStringLiteral("/DCIM/CANONMSC"));
    QFile ctg(card() + QStringLiteral("/DCIM/CANONMSC/M3100.CTG"));
    if (ctg.open(QIODevice::WriteOnly))
        ctg.write("ctg");
    for (int i = 1; i <= count; ++i) {
        const QString stem = QStringLiteral("DCIM/100CANON/IMG_%1").arg(i, 4, 10, QLatin1Char('0'));
        addJpeg(card(), stem + QStringLiteral(".JPG"), QStringLiteral("card-jpg-%1").arg(i));
        addRaw(card(), stem + QStringLiteral(".CR2"), QStringLiteral("card-raw-%1").arg(i), rawSize);
    }
}

void Scene::enableFavouriteCopies()
{
    QDir().mkpath(QFileInfo(m_cli.configFile()).path());
    QFile file(m_cli.configFile());
    if (file.open(QIODevice::WriteOnly))
        file.write("[General]\nLMR_FlowFavCopyEnabled=true\n");
}

QStringList Scene::shootPictures() const
{
    QStringList paths;
    for (const QString& name : QDir(shoot()).entryList(QDir::Files, QDir::Name)) {
        if (hasPictureSuffix(name))
            paths.append(shoot() + QLatin1Char('/') + name);
    }
    return paths;
}

QString describe(const QMap<QString, QMap<QString, int>>& counts)
{
    QStringList parts;
    for (auto area = counts.constBegin(); area != counts.constEnd(); ++area) {
        QStringList ids;
        for (auto id = area->constBegin(); id != area->constEnd(); ++id)
            ids.append(QStringLiteral("%1×%2").arg(id.key()).arg(id.value()));
        parts.append(area.key() + QStringLiteral(": ") + ids.join(QLatin1Char(' ')));
    }
    return parts.join(QStringLiteral("; "));
}

} // namespace lumaro::testing
