// SPDX-License-Identifier: GPL-3.0-or-later
// The one browsing state shared by every mode: folder, picture list, selection, per-file data and history.
#pragma once

#include "browse/state/DeletedFileInfo.h"
#include "browse/state/ImageAnnotation.h"
#include "browse/state/PictureFilter.h"
#include "platform/metadata/PictureMarks.h"

#include <QByteArray>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace lumaro::browse {

class ThumbnailCache;

enum class ProfessionalModeStyle
{
    style1,
    style2
};

// The direction of the last keyboard move; the views use it to scroll the right way.
enum class NavigationDirection
{
    none,
    previous,
    next,
    up,
    down,
    folderNext,
    folderPrevious
};

// Lives on the main thread and is changed only there, through the operations below, which keep the
// invariants: with no files there is no selection, a selection lies in 0…count−1, the deleted-files
// history holds at most 6 records (newest first). Each operation logs its steps as "LMRModeState - …".
// Plain fields without a rule are public members; their setters emit stateChanged() for the views.
class LMRModeState : public QObject
{
    Q_OBJECT
public:
    static constexpr int maxDeletedHistory = 6;

    explicit LMRModeState(ThumbnailCache* cache = nullptr, QObject* parent = nullptr);

    // --- the list and the selection
    // The pictures shown: the folder's pictures that pass the filter (all of them when no filter is set).
    const QStringList& imageFiles() const { return m_imageFiles; }
    std::optional<int> selectedImageIndex() const { return m_selectedImageIndex; }
    std::optional<QString> selectedImageFileName() const;
    // Replaces the folder's pictures; with a filter set, those that pass it are shown. The selection keeps
    // its number while in range.
    void setImageFiles(const QStringList& files);
    // Every picture of the folder, whatever the filter.
    const QStringList& folderFiles() const { return m_folderFiles; }

    // --- the filter
    const PictureFilter& pictureFilter() const { return m_filter; }
    // Shows the folder's pictures that pass `filter`, replacing the list as a whole (isBulkListUpdate is set
    // meanwhile). The selected picture stays selected when it passes; else the next one that passes in
    // browsing order, else the one before. A change of a picture's stars, flag or colours applies the filter
    // again, so a picture that no longer passes leaves the list the way a deleted one does. A new folder
    // starts unfiltered.
    void setPictureFilter(const PictureFilter& filter);
    // Selects `index` when it is in range; returns whether it did.
    bool select(int index);
    void clearSelection();
    void removeFile(int index);
    void restoreFile(const DeletedFileInfo& info);
    void clearImageData();

    // --- where the pictures come from
    const std::optional<QString>& authorizedDirectory() const { return m_authorizedDirectory; }
    const std::optional<QString>& pathRefOfImage() const { return m_pathRefOfImage; }
    const std::optional<QString>& originalFolderPath() const { return m_originalFolderPath; }
    const std::optional<QByteArray>& folderBookmarkData() const { return m_folderBookmarkData; }
    // When the folder shown changes, the list and every per-file map go with the old folder (they are keyed
    // by name, and every camera card reuses the same names).
    void setFolderPath(const std::optional<QString>& authorizedDirectory,
                       const std::optional<QString>& pathRefOfImage,
                       const std::optional<QString>& originalPath);
    void setFolderBookmarkData(const std::optional<QByteArray>& data);
    // The folder whose pictures are listed: pathRefOfImage, else the authorised folder.
    std::optional<QString> currentFolder() const;

    // --- deleted files
    const QList<DeletedFileInfo>& deletedFilesHistory() const { return m_deletedFilesHistory; }
    void addDeletedFile(const DeletedFileInfo& info);
    // Drops a record without restoring it (the restore chain failed for good, or the caller gave up).
    void removeDeletedRecord(const DeletedFileInfo& info);

    // --- deep mode
    const std::optional<QString>& currentDirectory() const { return m_currentDirectory; }
    const std::optional<QString>& baseDirectory() const { return m_baseDirectory; }
    const QStringList& directoryBaseList() const { return m_directoryBaseList; }
    const QStringList& recursiveDirectoryList() const { return m_recursiveDirectoryList; }
    bool isInDeepMode() const { return m_isInDeepMode; }
    int currentDeepIndex() const { return m_currentDeepIndex; }
    void updateNavigationState(const std::optional<QString>& currentDirectory,
                               const std::optional<QString>& baseDirectory,
                               const QStringList& directoryBaseList,
                               const QStringList& recursiveDirectoryList);
    void setDeepMode(bool on);
    void setCurrentDeepIndex(int index);

    // --- per-file data
    const ImageAnnotationMap& imageAnnotations() const { return m_imageAnnotations; }
    const QMap<QString, QStringList>& fileTags() const { return m_fileTags; }
    const QMap<QString, int>& rotationOverrides() const { return m_rotationOverrides; }
    void setImageAnnotations(const ImageAnnotationMap& annotations);
    void setAnnotation(const QString& fileName, const ImageAnnotation& annotation);
    void setFileTags(const QString& fileName, const QStringList& tags);
    void setRotationOverride(const QString& fileName, int degrees);
    // The display rotation of the picture at `path`: its override when it lies in the folder shown, else 0.
    int rotationOverrideForPath(const QString& path) const;
    // Counts changes of single files' tags and ratings, so that a folder-wide reading that began before one
    // can tell.
    quint64 fileTagsRevision() const { return m_fileTagsRevision; }
    // The tags of the folder's pictures as read from disk (absent names have none): replaces fileTags and the
    // annotations drawn from them.
    void setFolderTags(const QMap<QString, QStringList>& tagsByName);
    // Stars and pick/reject of the folder's pictures (absent names have none), as their XMP says.
    const QMap<QString, platform::PictureMarks>& ratings() const { return m_ratings; }
    platform::PictureMarks rating(const QString& fileName) const { return m_ratings.value(fileName); }
    void setRating(const QString& fileName, const platform::PictureMarks& marks);
    // Replaces every rating with those read from disk.
    void setFolderRatings(const QMap<QString, platform::PictureMarks>& ratingsByName);

    // --- layout
    int imagesPerRow() const { return m_imagesPerRow; }
    void setImagesPerRow(int columns);
    const QList<int>& imagesPerRowOptions() const { return m_imagesPerRowOptions; }
    ProfessionalModeStyle professionalModeStyle() const { return m_professionalModeStyle; }
    void setProfessionalModeStyle(ProfessionalModeStyle style);

    // Fields without rules of their own: the views read and write them directly and call notify().
    bool isShowingFolderPicker = false;
    bool isLoadingImages = false;
    bool hasRequestedPermissions = false;
    bool showingPermissionAlert = false;
    QStringList navigationPath;
    QString currentVisionClassification;
    QStringList currentVisionTags;
    QStringList poseCompositionLines;
    QString currentCompositionShot;
    QStringList faceCompositionLines;
    double windowWidth = 0;
    double availableBrowseWidth = 0;
    NavigationDirection lastNavigationDirection = NavigationDirection::none;
    bool isDeleteIndicatorVisible = false;
    double deleteIndicatorOpacity = 0;
    bool isRestoreIndicatorVisible = false;
    double restoreIndicatorOpacity = 0;
    bool isRestoreCountVisible = false;
    bool isRotateIndicatorVisible = false;
    double rotateIndicatorOpacity = 0;
    std::optional<QString> rotateErrorMessage;
    bool isRotateErrorVisible = false;
    bool isDeleting = false;
    bool isBulkListUpdate = false;

    void notify() { Q_EMIT stateChanged(); }

Q_SIGNALS:
    void pictureFilterChanged();
    void imageFilesChanged();
    void selectionChanged();
    void folderChanged();
    void perFileDataChanged();
    void historyChanged();
    void navigationChanged();
    void layoutChanged();
    // Any change at all, including the plain fields above.
    void stateChanged();

private:
    void resetNavigationState();
    // Replaces the list shown, the selection by the rule of setImageFiles, or `selection` (none: nullopt).
    void replaceShownList(const QStringList& files);
    void replaceShownList(const QStringList& files, std::optional<int> selection);
    // Shows the folder's pictures that pass the filter, keeping the selected picture where it can.
    void applyFilter();
    bool passesFilter(const QString& name) const;
    void reapplyFilterIfSet();

    ThumbnailCache* m_cache;
    int m_imagesPerRow = 5;
    std::optional<int> m_selectedImageIndex;
    QStringList m_imageFiles;
    QStringList m_folderFiles;
    PictureFilter m_filter;
    std::optional<QString> m_selectionBeforeEmpty; // the picture selected when the filter left none
    std::optional<QString> m_authorizedDirectory;
    std::optional<QString> m_pathRefOfImage;
    std::optional<QByteArray> m_folderBookmarkData;
    std::optional<QString> m_originalFolderPath;
    ImageAnnotationMap m_imageAnnotations;
    QMap<QString, QStringList> m_fileTags;
    QList<DeletedFileInfo> m_deletedFilesHistory;
    QMap<QString, int> m_rotationOverrides;
    QMap<QString, platform::PictureMarks> m_ratings;
    quint64 m_fileTagsRevision = 0;
    std::optional<QString> m_currentDirectory;
    std::optional<QString> m_baseDirectory;
    QStringList m_directoryBaseList;
    QStringList m_recursiveDirectoryList;
    bool m_isInDeepMode = false;
    int m_currentDeepIndex = 0;
    ProfessionalModeStyle m_professionalModeStyle = ProfessionalModeStyle::style1;
    QList<int> m_imagesPerRowOptions{2, 3, 4, 5, 6, 8, 10};
};

} // namespace lumaro::browse
