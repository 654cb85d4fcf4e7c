// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/PoseVisionTags.h"

#include "platform/Log.h"
#include "vision/IndexFolder.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::pose {

namespace {

std::optional<QStringList> tagsInFile(const QString& indexPath, const QString& fileName)
{
    QFile file(indexPath);
    if (!file.open(QIODevice::ReadOnly)) {
        platform::Log::line(QStringLiteral("POSE"), QStringLiteral("⚠️ 无法读取索引文件: ") + indexPath);
        return std::nullopt;
    }
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll(), &error);
    if (!document.isObject()) {
        platform::Log::line(QStringLiteral("POSE"),
                            QStringLiteral("⚠️ 索引文件格式错误: ") + indexPath + QStringLiteral(" ") + error.errorString());
        return std::nullopt;
    }
    for (const QJsonValue& entry : document.object().value(QStringLiteral("results")).toArray()) {
        const QJsonObject result = entry.toObject();
        if (result.value(QStringLiteral("fileName")).toString() != fileName)
            continue;
        QStringList tags;
        for (const char* key : {"objects", "scene"}) {
            for (const QJsonValue& label : result.value(QLatin1String(key)).toArray()) {
                const QString text = label.toString();
                if (!text.isEmpty() && !tags.contains(text))
                    tags << text;
            }
        }
        return tags;
    }
    return std::nullopt;
}

} // namespace

std::optional<QStringList> PoseVisionTags::forPicture(const QString& picturePath)
{
    const QFileInfo picture(picturePath);
    const QStringList indexFiles =
        vision::IndexFolder::jsonFiles(picture.absolutePath(), QStringLiteral("vision_index_"));
    for (auto path = indexFiles.crbegin(); path != indexFiles.crend(); ++path) {
        if (auto tags = tagsInFile(*path, picture.fileName()))
            return tags;
    }
    return std::nullopt;
}

} // namespace lumaro::pose
