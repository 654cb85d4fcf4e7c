// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/hotkeys/ColorAnnotationService.h"

#include "browse/hotkeys/HotkeyAction.h"
#include "browse/marks/PictureRater.h"
#include "browse/state/LMRModeState.h"
#include "platform/FileTagStore.h"
#include "platform/Log.h"

#include <QDir>

namespace lumaro::browse {

using platform::Log;

namespace {
const QString kTag = QStringLiteral("HotkeyDispatcher");
}

ColorAnnotationService::ColorAnnotationService(platform::FileTagStore& tags, PictureRater* rater)
    : m_tags(tags), m_rater(rater ? *rater : PictureRater::shared())
{
}

ImageAnnotation ColorAnnotationService::annotationFromTags(const QStringList& tags)
{
    return browse::annotationFromTags(tags);
}

void ColorAnnotationService::applyToState(LMRModeState& state, const QString& fileName,
                                          const QStringList& tags)
{
    state.setFileTags(fileName, tags);
    state.setAnnotation(fileName, annotationFromTags(tags));
}

std::optional<QStringList> ColorAnnotationService::toggle(LMRModeState& state, const QString& folder,
                                                          const QString& fileName, const QString& color)
{
    const QString path = QDir(folder).filePath(fileName);
    QString error;
    auto tags = m_tags.tags(path, &error);
    if (!tags) {
        Log::line(kTag, QStringLiteral("读取标签失败: %1 (%2)").arg(fileName, error));
        return std::nullopt;
    }
    const bool adding = !tags->contains(color);
    if (adding)
        tags->append(color);
    else
        tags->removeAll(color);
    if (!m_tags.setTags(path, *tags, &error)) {
        Log::line(kTag, QStringLiteral("写入标签失败: %1 (%2)").arg(fileName, error));
        return std::nullopt;
    }
    Log::line(kTag,
              (adding ? QStringLiteral("添加颜色标签: %1 -> %2") : QStringLiteral("移除颜色标签: %1 -> %2"))
                  .arg(color, fileName));
    if (!m_rater.writeColours(path, annotationFromTags(*tags).colors, &error))
        Log::line(kTag, QStringLiteral("写入XMP颜色标签失败: %1 (%2)").arg(fileName, error));
    applyToState(state, fileName, *tags);
    return tags;
}

} // namespace lumaro::browse
