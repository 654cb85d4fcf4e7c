// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/state/LMRModeState.h"

#include "browse/thumbnails/ThumbnailCache.h"
#include "platform/Log.h"

#include <QDir>

namespace lumaro::browse {

using platform::Log;

namespace {

const QString kTag = QStringLiteral("LMRModeState");

QString indexText(std::optional<int> index)
{
    return QString::number(index.value_or(-1));
}

QString pathText(const std::optional<QString>& path)
{
    return path.value_or(QStringLiteral("nil"));
}

} // namespace

LMRModeState::LMRModeState(ThumbnailCache* cache, QObject* parent)
    : QObject(parent), m_cache(cache ? cache : &ThumbnailCache::shared())
{
}

std::optional<QString> LMRModeState::selectedImageFileName() const
{
    if (!m_selectedImageIndex || *m_selectedImageIndex < 0 || *m_selectedImageIndex >= m_imageFiles.size())
        return std::nullopt;
    return m_imageFiles.at(*m_selectedImageIndex);
}

void LMRModeState::setImageFiles(const QStringList& files)
{
    m_folderFiles = files;
    if (!m_filter.isActive())
        return replaceShownList(files);
    QStringList shown;
    for (const QString& name : files) {
        if (passesFilter(name))
            shown << name;
    }
    replaceShownList(shown);
}

void LMRModeState::replaceShownList(const QStringList& files)
{
    // A selection still in range is kept even if it now names another file: a reload keeps the user's place.
    std::optional<int> selection = m_selectedImageIndex;
    if (selection && *selection >= files.size())
        selection = files.isEmpty() ? std::nullopt : std::optional(0);
    replaceShownList(files, selection);
}

void LMRModeState::replaceShownList(const QStringList& files, std::optional<int> selection)
{
    Log::line(kTag, QStringLiteral("设置图像文件: %1 个文件").arg(files.size()));
    const std::optional<int> previous = m_selectedImageIndex;
    m_imageFiles = files;
    m_selectedImageIndex = selection;
    if (previous && previous != selection)
        Log::line(kTag, QStringLiteral("索引重置: %1 -> %2").arg(*previous).arg(indexText(selection)));
    Log::line(kTag, QStringLiteral("图像文件设置完成，当前选中索引: ") + indexText(m_selectedImageIndex));
    Q_EMIT imageFilesChanged();
    Q_EMIT selectionChanged();
    Q_EMIT stateChanged();
}

bool LMRModeState::passesFilter(const QString& name) const
{
    return m_filter.accepts(m_ratings.value(name), m_imageAnnotations.value(name));
}

void LMRModeState::setPictureFilter(const PictureFilter& filter)
{
    if (filter == m_filter)
        return;
    m_filter = filter;
    Log::line(kTag,
              QStringLiteral("筛选: ") + (filter.isActive() ? filter.description() : QStringLiteral("全部")));
    applyFilter();
    Q_EMIT pictureFilterChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::applyFilter()
{
    QStringList shown;
    for (const QString& name : std::as_const(m_folderFiles)) {
        if (passesFilter(name))
            shown << name;
    }
    if (shown == m_imageFiles)
        return;
    // The picture to stay on: the selected one, or the one selected before the filter left nothing.
    const std::optional<QString> selected =
        selectedImageFileName() ? selectedImageFileName() : m_selectionBeforeEmpty;
    std::optional<int> target;
    if (selected && !shown.isEmpty()) {
        const qsizetype from = m_folderFiles.indexOf(*selected);
        // The picture itself when it passes, else the next one that does, else the one before.
        for (qsizetype i = from; i >= 0 && i < m_folderFiles.size() && !target; ++i) {
            if (const qsizetype at = shown.indexOf(m_folderFiles.at(i)); at >= 0)
                target = int(at);
        }
        for (qsizetype i = from - 1; i >= 0 && !target; --i) {
            if (const qsizetype at = shown.indexOf(m_folderFiles.at(i)); at >= 0)
                target = int(at);
        }
    }
    if (!target && !shown.isEmpty())
        target = 0;
    m_selectionBeforeEmpty = shown.isEmpty() ? selected : std::nullopt;
    isBulkListUpdate = true;
    replaceShownList(shown, target);
    isBulkListUpdate = false;
}

void LMRModeState::reapplyFilterIfSet()
{
    if (m_filter.isActive())
        applyFilter();
}

bool LMRModeState::select(int index)
{
    if (index < 0 || index >= m_imageFiles.size())
        return false;
    if (m_selectedImageIndex == index)
        return true;
    m_selectedImageIndex = index;
    Q_EMIT selectionChanged();
    Q_EMIT stateChanged();
    return true;
}

void LMRModeState::clearSelection()
{
    if (!m_selectedImageIndex)
        return;
    m_selectedImageIndex.reset();
    Q_EMIT selectionChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::removeFile(int index)
{
    if (index < 0 || index >= m_imageFiles.size()) {
        Log::line(kTag, QStringLiteral("删除文件索引超出范围: %1").arg(index));
        return;
    }
    const QString name = m_imageFiles.at(index);
    Log::line(kTag, QStringLiteral("从列表中移除文件: ") + name);
    m_imageFiles.removeAt(int(index));
    m_folderFiles.removeOne(name);

    const int remaining = int(m_imageFiles.size());
    const std::optional<int> old = m_selectedImageIndex;
    if (remaining == 0)
        m_selectedImageIndex.reset();
    else if (!old)
        ; // nothing was selected and nothing is now
    else if (*old >= remaining)
        m_selectedImageIndex = remaining - 1;
    else if (*old == index)
        m_selectedImageIndex = std::min(index, remaining - 1);
    // Otherwise the number is kept even when it lay after the removed file, so the selection moves on by one
    // file; deletes are issued on the selected file, where this does not arise.

    if (const auto folder = currentFolder())
        m_cache->clearFile(QDir(*folder).filePath(name));
    m_imageAnnotations.remove(name);
    m_fileTags.remove(name);
    m_rotationOverrides.remove(name);
    m_ratings.remove(name);

    Log::line(kTag, QStringLiteral("文件删除完成，剩余文件数: %1, 当前选中索引: %2")
                        .arg(remaining)
                        .arg(indexText(m_selectedImageIndex)));
    Q_EMIT imageFilesChanged();
    Q_EMIT selectionChanged();
    Q_EMIT perFileDataChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::addDeletedFile(const DeletedFileInfo& info)
{
    Log::line(kTag, QStringLiteral("添加删除文件到历史: %1 [%2]").arg(info.fileName).arg(info.originalIndex));
    m_deletedFilesHistory.prepend(info);
    if (m_deletedFilesHistory.size() > maxDeletedHistory) {
        m_deletedFilesHistory.resize(maxDeletedHistory);
        Log::line(kTag, QStringLiteral("删除历史已满，移除最旧的记录"));
    }
    Log::line(kTag, QStringLiteral("当前删除历史记录数: %1").arg(m_deletedFilesHistory.size()));
    Q_EMIT historyChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::removeDeletedRecord(const DeletedFileInfo& info)
{
    if (m_deletedFilesHistory.removeOne(info)) {
        Q_EMIT historyChanged();
        Q_EMIT stateChanged();
    }
}

void LMRModeState::restoreFile(const DeletedFileInfo& info)
{
    Log::line(kTag, QStringLiteral("恢复文件到列表: %1 [%2]").arg(info.fileName).arg(info.originalIndex));
    const int inFolder =
        std::clamp(info.folderIndex.value_or(info.originalIndex), 0, int(m_folderFiles.size()));
    m_folderFiles.insert(inFolder, info.fileName);
    if (!m_filter.isActive()) {
        m_imageFiles = m_folderFiles;
        m_selectedImageIndex = inFolder;
    } else if (passesFilter(info.fileName)) {
        QStringList shown;
        for (const QString& name : std::as_const(m_folderFiles)) {
            if (passesFilter(name))
                shown << name;
        }
        m_imageFiles = shown;
        m_selectedImageIndex = int(shown.indexOf(info.fileName));
    } else {
        Log::line(kTag, QStringLiteral("恢复的文件不符合当前筛选，不显示: ") + info.fileName);
    }
    if (m_deletedFilesHistory.removeOne(info))
        Log::line(kTag, QStringLiteral("从删除历史中移除已恢复的文件"));
    Log::line(kTag, QStringLiteral("文件恢复完成，当前文件数: %1, 选中索引: %2")
                        .arg(m_imageFiles.size())
                        .arg(indexText(m_selectedImageIndex)));
    Q_EMIT imageFilesChanged();
    Q_EMIT selectionChanged();
    Q_EMIT historyChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::clearImageData()
{
    m_imageFiles.clear();
    m_folderFiles.clear();
    m_selectionBeforeEmpty.reset();
    const bool wasFiltered = m_filter.isActive();
    m_filter = {};
    if (wasFiltered)
        Q_EMIT pictureFilterChanged();
    m_selectedImageIndex.reset();
    m_imageAnnotations.clear();
    m_fileTags.clear();
    m_rotationOverrides.clear();
    m_ratings.clear();
    currentVisionClassification.clear();
    currentVisionTags.clear();
    Log::line(kTag, QStringLiteral("图像数据清除完成"));
    Q_EMIT imageFilesChanged();
    Q_EMIT selectionChanged();
    Q_EMIT perFileDataChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::setFolderPath(const std::optional<QString>& authorizedDirectory,
                                 const std::optional<QString>& pathRefOfImage,
                                 const std::optional<QString>& originalPath)
{
    Log::line(kTag, QStringLiteral("设置文件夹路径:"));
    Log::raw(QStringLiteral("  - 授权目录: ") + pathText(authorizedDirectory));
    Log::raw(QStringLiteral("  - 路径引用: ") + pathText(pathRefOfImage));
    Log::raw(QStringLiteral("  - 原始路径: ") + pathText(originalPath));
    const bool authorizedChanged = authorizedDirectory != m_authorizedDirectory;
    const std::optional<QString> shownBefore = currentFolder();
    m_authorizedDirectory = authorizedDirectory;
    m_pathRefOfImage = pathRefOfImage;
    m_originalFolderPath = originalPath;
    if (authorizedChanged) {
        if (m_isInDeepMode) {
            Log::line(kTag, QStringLiteral("深度模式中，授权目录变化但不重置导航状态"));
        } else {
            resetNavigationState();
            Log::line(kTag, QStringLiteral("检测到授权目录变化，重置导航状态"));
        }
    }
    const std::optional<QString> shown = currentFolder();
    if (shown.has_value() != shownBefore.has_value() ||
        (shown && QDir::cleanPath(*shown) != QDir::cleanPath(*shownBefore)))
        clearImageData();
    Log::line(kTag, QStringLiteral("文件夹路径设置完成"));
    Q_EMIT folderChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::setFolderBookmarkData(const std::optional<QByteArray>& data)
{
    m_folderBookmarkData = data;
    Q_EMIT stateChanged();
}

std::optional<QString> LMRModeState::currentFolder() const
{
    return m_pathRefOfImage ? m_pathRefOfImage : m_authorizedDirectory;
}

void LMRModeState::resetNavigationState()
{
    m_currentDirectory.reset();
    m_baseDirectory.reset();
    m_directoryBaseList.clear();
    m_recursiveDirectoryList.clear();
    m_currentDeepIndex = 0;
    Q_EMIT navigationChanged();
}

void LMRModeState::updateNavigationState(const std::optional<QString>& currentDirectory,
                                         const std::optional<QString>& baseDirectory,
                                         const QStringList& directoryBaseList,
                                         const QStringList& recursiveDirectoryList)
{
    m_currentDirectory = currentDirectory;
    m_baseDirectory = baseDirectory;
    m_directoryBaseList = directoryBaseList;
    m_recursiveDirectoryList = recursiveDirectoryList;
    Log::line(kTag, QStringLiteral("更新导航状态:"));
    Log::raw(QStringLiteral("  - 当前目录: ") + pathText(currentDirectory));
    Log::raw(QStringLiteral("  - 基础目录: ") + pathText(baseDirectory));
    Log::line(kTag, QStringLiteral("基础目录列表: ") + directoryBaseList.join(QStringLiteral(", ")));
    Q_EMIT navigationChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::setDeepMode(bool on)
{
    m_isInDeepMode = on;
    Q_EMIT navigationChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::setCurrentDeepIndex(int index)
{
    m_currentDeepIndex = index;
    Q_EMIT navigationChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::setImageAnnotations(const ImageAnnotationMap& annotations)
{
    m_imageAnnotations = annotations;
    reapplyFilterIfSet();
    Q_EMIT perFileDataChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::setAnnotation(const QString& fileName, const ImageAnnotation& annotation)
{
    if (annotation.colors.isEmpty())
        m_imageAnnotations.remove(fileName);
    else
        m_imageAnnotations.insert(fileName, annotation);
    reapplyFilterIfSet();
    Q_EMIT perFileDataChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::setFileTags(const QString& fileName, const QStringList& tags)
{
    ++m_fileTagsRevision;
    if (tags.isEmpty())
        m_fileTags.remove(fileName);
    else
        m_fileTags.insert(fileName, tags);
    reapplyFilterIfSet();
    Q_EMIT perFileDataChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::setRotationOverride(const QString& fileName, int degrees)
{
    const int normalised = ((degrees % 360) + 360) % 360;
    if (normalised == 0)
        m_rotationOverrides.remove(fileName);
    else
        m_rotationOverrides.insert(fileName, normalised);
    Q_EMIT perFileDataChanged();
    Q_EMIT stateChanged();
}

int LMRModeState::rotationOverrideForPath(const QString& path) const
{
    const auto folder = currentFolder();
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    if (!folder || slash < 0 || QDir::cleanPath(path.left(slash)) != QDir::cleanPath(*folder))
        return 0;
    return m_rotationOverrides.value(path.mid(slash + 1), 0);
}

void LMRModeState::setFolderTags(const QMap<QString, QStringList>& tagsByName)
{
    m_fileTags.clear();
    m_imageAnnotations.clear();
    for (auto it = tagsByName.cbegin(); it != tagsByName.cend(); ++it) {
        if (it->isEmpty())
            continue;
        m_fileTags.insert(it.key(), *it);
        const ImageAnnotation annotation = annotationFromTags(*it);
        if (!annotation.colors.isEmpty())
            m_imageAnnotations.insert(it.key(), annotation);
    }
    reapplyFilterIfSet();
    Q_EMIT perFileDataChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::setRating(const QString& fileName, const platform::PictureMarks& marks)
{
    ++m_fileTagsRevision;
    if (marks.hasRating())
        m_ratings.insert(fileName, marks);
    else
        m_ratings.remove(fileName);
    reapplyFilterIfSet();
    Q_EMIT perFileDataChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::setFolderRatings(const QMap<QString, platform::PictureMarks>& ratingsByName)
{
    m_ratings.clear();
    for (auto it = ratingsByName.cbegin(); it != ratingsByName.cend(); ++it) {
        if (it->hasRating())
            m_ratings.insert(it.key(), *it);
    }
    reapplyFilterIfSet();
    Q_EMIT perFileDataChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::setImagesPerRow(int columns)
{
    if (columns < 1 || columns == m_imagesPerRow)
        return;
    m_imagesPerRow = columns;
    Q_EMIT layoutChanged();
    Q_EMIT stateChanged();
}

void LMRModeState::setProfessionalModeStyle(ProfessionalModeStyle style)
{
    m_professionalModeStyle = style;
    Q_EMIT layoutChanged();
    Q_EMIT stateChanged();
}

} // namespace lumaro::browse
