// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FreedesktopTrash.h"

#include "platform/files/FileNameCodec.h"
#include "platform/files/TrashItem.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

namespace lumaro::platform {

namespace {

void setError(QString* error, const QString& text)
{
    if (error)
        *error = text;
}

std::string bytesOf(const QString& path)
{
    return FileNameCodec::encode(path).toStdString();
}

QString pathOf(const std::string& bytes)
{
    return FileNameCodec::decode(QByteArray::fromStdString(bytes));
}

} // namespace

FreedesktopTrash& FreedesktopTrash::shared()
{
    static FreedesktopTrash trash;
    return trash;
}

FreedesktopTrash::FreedesktopTrash(VolumeLookup lookup)
    : m_lookup(std::move(lookup))
{
}

QByteArray FreedesktopTrash::encodedPath(const QString& absolutePath)
{
    return QByteArray::fromStdString(TrashItem::encodedPath(bytesOf(absolutePath)));
}

QString FreedesktopTrash::trashFor(const QString& path, QString* error) const
{
    const QString home = TrashDirectories::homeTrash();
    if (home.isEmpty()) {
        setError(error, QStringLiteral("no home folder, so no Trash"));
        return {};
    }
    // A name lives on the volume of the folder holding it: a link is trashed as a link, where it sits, even
    // when it leads onto another volume (whose trash it cannot be renamed into).
    const auto fileVolume = m_lookup(QFileInfo(path).absolutePath());
    const auto homeVolume = m_lookup(home);
    if (!fileVolume || !homeVolume) {
        setError(error, QStringLiteral("cannot tell which volume %1 is on").arg(path));
        return {};
    }
    if (fileVolume->device == homeVolume->device)
        return home;
    return TrashDirectories::volumeTrash(fileVolume->topDir);
}

std::optional<TrashedItem> FreedesktopTrash::moveToTrash(const QString& path, QString* error)
{
    const QFileInfo source(path);
    if (!FileNameCodec::exists(path)) {
        setError(error, QStringLiteral("%1: %2").arg(path, QString::fromLocal8Bit(std::strerror(ENOENT))));
        return std::nullopt;
    }
    const QString absolute = source.absoluteFilePath();
    const QString trashDir = trashFor(absolute, error);
    if (trashDir.isEmpty() || !TrashDirectories::ensure(trashDir, error))
        return std::nullopt;

    const QString topDir = TrashDirectories::topDirOfTrash(trashDir);
    // Relative to the volume's top when the path runs through it; a path that reaches the volume through a
    // link elsewhere is recorded whole, as it was given, rather than climbing out with "../".
    const QString relative = topDir.isEmpty() ? QString() : QDir(topDir).relativeFilePath(absolute);
    const QString recorded =
        relative.isEmpty() || relative.startsWith(QStringLiteral("../")) ? absolute : relative;
    std::string placeError;
    const auto placed = TrashItem::place(bytesOf(absolute), bytesOf(source.fileName()), bytesOf(trashDir),
                                         TrashItem::record(bytesOf(recorded)), &placeError);
    if (!placed) {
        setError(error, pathOf(placeError));
        return std::nullopt;
    }
    return TrashedItem{pathOf(placed->trashedPath), pathOf(placed->infoPath)};
}

} // namespace lumaro::platform
