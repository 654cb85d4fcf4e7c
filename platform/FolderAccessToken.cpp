// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FolderAccessToken.h"

#include "platform/files/FileNameCodec.h"
#include "platform/files/VisibleEntries.h"

#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <sys/stat.h>
#include <unistd.h>

namespace lumaro::platform {

namespace {

struct Identity
{
    qint64 device = 0;
    qint64 inode = 0;
};

std::optional<Identity> identityOf(const QString& folder)
{
    struct stat info {};
    if (::stat(FileNameCodec::encode(folder).constData(), &info) != 0 || !S_ISDIR(info.st_mode))
        return std::nullopt;
    return Identity{qint64(info.st_dev), qint64(info.st_ino)};
}

void setError(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

} // namespace

std::optional<QByteArray> FolderAccessToken::create(const QString& folder, QString* error)
{
    const QString absolute = QFileInfo(folder).absoluteFilePath();
    const auto identity = identityOf(absolute);
    if (!identity) {
        setError(error, QStringLiteral("不是可访问的文件夹: ") + folder);
        return std::nullopt;
    }
    const QJsonObject object{{QStringLiteral("path"), absolute},
                             {QStringLiteral("device"), QString::number(identity->device)},
                             {QStringLiteral("inode"), QString::number(identity->inode)}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<ResolvedFolder> FolderAccessToken::resolve(const QByteArray& token, QString* error)
{
    const QJsonObject object = QJsonDocument::fromJson(token).object();
    const QString path = object.value(QStringLiteral("path")).toString();
    if (path.isEmpty()) {
        setError(error, QStringLiteral("书签数据无效"));
        return std::nullopt;
    }
    const auto now = identityOf(path);
    const bool same = now && QString::number(now->device) == object.value(QStringLiteral("device")).toString()
                      && QString::number(now->inode) == object.value(QStringLiteral("inode")).toString();
    return ResolvedFolder{path, !same};
}

bool FolderAccessToken::startAccess(const QString& folder)
{
    return VisibleEntries::isListableFolder(FileNameCodec::encode(folder).constData());
}

void FolderAccessToken::stopAccess(const QString&)
{
    // Nothing to release on Linux: access was a check, not a grant.
}

} // namespace lumaro::platform
