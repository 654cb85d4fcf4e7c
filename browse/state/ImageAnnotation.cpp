// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/state/ImageAnnotation.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace lumaro::browse {

namespace {
const QString kColors = QStringLiteral("colors");
}

const QStringList& annotationColors()
{
    static const QStringList colors{QStringLiteral("red"),    QStringLiteral("yellow"),
                                    QStringLiteral("orange"), QStringLiteral("green"),
                                    QStringLiteral("blue"),   QStringLiteral("purple")};
    return colors;
}

ImageAnnotation annotationFromTags(const QStringList& tags)
{
    ImageAnnotation annotation;
    for (const QString& tag : tags) {
        if (annotationColors().contains(tag) && !annotation.colors.contains(tag))
            annotation.colors << tag;
    }
    return annotation;
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
