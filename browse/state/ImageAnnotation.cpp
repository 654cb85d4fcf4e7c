// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/state/ImageAnnotation.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace lumaro::browse {

namespace {
const QString kColors = QStringLiteral("colors");
}

QByteArray encodeAnnotations(const ImageAnnotationMap& annotations)
{
    QJsonObject root;
    for (auto it = annotations.cbegin(); it != annotations.cend(); ++it)
        root.insert(it.key(), QJsonObject{{kColors, QJsonArray::fromStringList(it->colors)}});
    return QJsonDocument(root).toJson(QJsonDocument::Compact);
}

ImageAnnotationMap decodeAnnotations(const QByteArray& json)
{
    ImageAnnotationMap annotations;
    const QJsonObject root = QJsonDocument::fromJson(json).object();
    for (auto it = root.constBegin(); it != root.constEnd(); ++it) {
        if (!it->isObject())
            continue;
        ImageAnnotation annotation;
        for (const QJsonValue& color : it->toObject().value(kColors).toArray()) {
            if (color.isString())
                annotation.colors << color.toString();
        }
        annotations.insert(it.key(), annotation);
    }
    return annotations;
}

} // namespace lumaro::browse
