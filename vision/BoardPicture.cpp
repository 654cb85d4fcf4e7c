// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/BoardPicture.h"

#include "platform/FileTagStore.h"
#include "platform/metadata/CaptureMetadata.h"
#include "platform/metadata/XmpSidecar.h"

#include <QDir>
#include <QFileInfo>

namespace lumaro::vision {

const QStringList& BoardPicture::colourOrder()
{
    static const QStringList order{QStringLiteral("red"),    QStringLiteral("yellow"),
                                   QStringLiteral("orange"), QStringLiteral("green"),
                                   QStringLiteral("blue"),   QStringLiteral("purple")};
    return order;
}

BoardPicture BoardPicture::read(const QString& folder, const QString& fileName, platform::FileTagStore& tags,
                                const QHash<QString, QString>& marks)
{
    BoardPicture picture;
    picture.fileName = fileName;
    const QString path = QDir(folder).filePath(fileName);
    QStringList colours = tags.tags(path).value_or(QStringList());
    QString error;
    if (const std::optional<platform::PictureMarks> xmp = platform::XmpSidecar::read(path, &error)) {
        picture.stars = xmp->stars;
        picture.flag = xmp->flag;
        colours << xmp->colours;
    } else {
        picture.error = error;
    }
    for (const QString& colour : colourOrder())
        if (colours.contains(colour, Qt::CaseInsensitive))
            picture.colours << colour;
    picture.mark = marks.value(fileName);
    const platform::CaptureMetadata metadata = platform::CaptureMetadata::read(path);
    picture.taken = metadata.captured.value_or(QFileInfo(path).lastModified());
    return picture;
}

} // namespace lumaro::vision
