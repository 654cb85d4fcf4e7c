// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/IndexFileTagStore.h"

#include "platform/files/HiddenList.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

namespace lumaro::platform {

namespace {

void setError(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

std::optional<QJsonObject> readTagFile(const QString& tagFile, QString* error)
{
    QFile file(tagFile);
    if (!file.exists())
        return QJsonObject();
    if (!file.open(QIODevice::ReadOnly)) {
        setError(error, file.errorString());
        return std::nullopt;
    }
    QJsonParseError parseError;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &parseError);
    if (!document.isObject()) {
        setError(error, QStringLiteral("%1 is not a tag file: %2").arg(tagFile, parseError.errorString()));
        return std::nullopt;
    }
    return document.object();
}

} // namespace

QString IndexFileTagStore::tagFileFor(const QString& picturePath)
{
    const QFileInfo picture(picturePath);
    return picture.absolutePath() + QStringLiteral("/_index/") + fileName;
}

std::optional<QStringList> IndexFileTagStore::tags(const QString& path, QString* error) const
{
    if (!QFileInfo::exists(path)) {
        setError(error, QStringLiteral("%1 does not exist").arg(path));
        return std::nullopt;
    }
    std::lock_guard lock(m_mutex);
    const auto object = readTagFile(tagFileFor(path), error);
    if (!object)
        return std::nullopt;
    QStringList names;
    for (const QJsonValue& value : object->value(QFileInfo(path).fileName()).toArray())
        names << value.toString();
    names.removeAll(QString());
    return names;
}

bool IndexFileTagStore::setTags(const QString& path, const QStringList& tags, QString* error)
{
    const QFileInfo picture(path);
    if (!picture.exists()) {
        setError(error, QStringLiteral("%1 does not exist").arg(path));
        return false;
    }
    std::lock_guard lock(m_mutex);
    const QString indexFolder = picture.absolutePath() + QStringLiteral("/_index");
    const QFileInfo indexInfo(indexFolder);
    if (indexInfo.exists() && !indexInfo.isDir()) {
        setError(error, QStringLiteral("%1 exists and is not a folder").arg(indexFolder));
        return false;
    }
    if (!indexInfo.exists()) {
        if (!QDir().mkpath(indexFolder)) {
            setError(error, QStringLiteral("cannot create %1").arg(indexFolder));
            return false;
        }
        // File managers hide it as the app does.
        HiddenList::add(picture.absolutePath(), QByteArrayLiteral("_index"));
    }
    const QString tagFile = tagFileFor(path);
    auto object = readTagFile(tagFile, error);
    if (!object)
        return false;
    if (tags.isEmpty())
        object->remove(picture.fileName());
    else
        object->insert(picture.fileName(), QJsonArray::fromStringList(tags));
    QSaveFile file(tagFile);
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(*object).toJson()) < 0 || !file.commit()) {
        setError(error, file.errorString());
        return false;
    }
    return true;
}

} // namespace lumaro::platform
