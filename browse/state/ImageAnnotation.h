// SPDX-License-Identifier: GPL-3.0-or-later
// The colour annotation of one picture, as the views draw it and as it is persisted between modes.
#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>

namespace lumaro::browse {

struct ImageAnnotation
{
    QStringList colors; // colour names ("red", "yellow", …) in the order they were set

    friend bool operator==(const ImageAnnotation&, const ImageAnnotation&) = default;
};

using ImageAnnotationMap = QMap<QString, ImageAnnotation>;

// The six colour names a picture can be annotated with, in key order: red, yellow, orange, green, blue,
// purple.
const QStringList& annotationColors();
// The colour names among a file's tags, in their order, each once; other programs' tags are left out.
ImageAnnotation annotationFromTags(const QStringList& tags);

// {"IMG_0001.JPG": {"colors": ["red"]}, …}; entries that are not objects are skipped on reading.
QByteArray encodeAnnotations(const ImageAnnotationMap& annotations);
ImageAnnotationMap decodeAnnotations(const QByteArray& json);

} // namespace lumaro::browse
