// SPDX-License-Identifier: GPL-3.0-or-later
#include "pose/PoseVisionTags.h"

#include "platform/Log.h"
#include "vision/VisionIndexReader.h"

#include <QFileInfo>

namespace lumaro::pose {

std::optional<QStringList> PoseVisionTags::forPicture(const QString& picturePath)
{
    const QFileInfo picture(picturePath);
    QStringList unreadable;
    const auto result = vision::VisionIndexReader::resultFor(picture.absolutePath(), picture.fileName(), &unreadable);
    for (const QString& path : unreadable)
        platform::Log::line(QStringLiteral("POSE"), QStringLiteral("⚠️ 索引文件格式错误: ") + path);
    if (!result)
        return std::nullopt;
    QStringList tags;
    for (const QString& label : result->recognizedObjects + result->sceneClassification) {
        if (!label.isEmpty() && !tags.contains(label))
            tags << label;
    }
    return tags;
}

} // namespace lumaro::pose
