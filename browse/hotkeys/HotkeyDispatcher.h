// SPDX-License-Identifier: GPL-3.0-or-later
// Carries out the keyboard actions on the shared browsing state: moves, colours, delete, restore, rotate.
#pragma once

#include "browse/hotkeys/HotkeyAction.h"
#include "browse/state/DeletedFileInfo.h"
#include "platform/Clock.h"
#include "platform/metadata/PictureMarks.h"

#include <QList>
#include <QObject>
#include <QString>
#include <Qt>

#include <functional>
#include <memory>
#include <optional>

namespace lumaro::platform {
class FileTagStore;
struct RotationOutcome;
} // namespace lumaro::platform

namespace lumaro::browse {

class BrowseChrome;
class ColorAnnotationService;
class PictureRater;
struct RatingChange;
class FileDeleteService;
class FolderNavigator;
class HotkeyManager;
class LMRModeState;
class ThumbnailCache;
class ThumbnailLoader;
class ThumbnailReloadService;

// Everything the dispatcher's actions use; a null member means the process-wide shared instance.
struct DispatcherServices
{
    using RotateFunction = std::function<platform::RotationOutcome(const QString& path)>;

    FileDeleteService* deleteService = nullptr;
    platform::FileTagStore* tags = nullptr;
    ThumbnailCache* cache = nullptr;
    ThumbnailReloadService* reload = nullptr;
    FolderNavigator* navigator = nullptr;
    PictureRater* rater = nullptr;
    // The window's decoder: a turned picture's stored images are dropped here directly, since the reload
    // notification is deduplicated and would swallow a second turn within its cooldown.
    ThumbnailLoader* loader = nullptr;
    RotateFunction rotate; // empty: platform::ImageRotator::rotateLeft
    platform::Clock clock; // empty: the system clock
};

// Main thread only: every change to LMRModeState happens here. Delete, restore and rotate run their file work
// on the thread pool and hand the result back through the event loop; the finished signals fire then. An
// action that needs a selection or a folder does nothing but log when there is none. A second delete while
// one is under way (isDeleting) is refused, and so is a delete key pressed again within
// deletePressGuardSeconds of the last one (a bounced or doubled key press deletes one picture, not two); a
// second restore while one runs is refused too; rotations asked for while one runs are queued and done in
// order. A held key's repeats carry out only the moves (repeatsWhileHeld). A delete or restore whose folder
// is no longer shown when its result arrives still records its history change, but leaves the list alone. A
// record whose restore failed with no way back left stays in the history (a failed restore changes nothing);
// the next restore drops it and goes on to the older ones.
class HotkeyDispatcher : public QObject
{
    Q_OBJECT
public:
    using RotateFunction = DispatcherServices::RotateFunction;
    using Services = DispatcherServices;

    HotkeyDispatcher(LMRModeState& state, HotkeyManager& manager, BrowseChrome* chrome = nullptr,
                     Services services = {}, QObject* parent = nullptr);
    ~HotkeyDispatcher() override;

    // The window that full screen, the folder panel and alerts go to; may be set after construction.
    void setChrome(BrowseChrome* chrome) { m_chrome = chrome; }

    static constexpr double deletePressGuardSeconds = 0.25;

    // A key press from a browsing view: carries out the bound action. Returns whether a binding matched (the
    // view then consumes the event, also when it was an auto-repeat that the action ignores).
    bool handleKey(int qtKey, Qt::KeyboardModifiers modifiers, bool isAutoRepeat = false);
    void perform(HotkeyAction action);
    // Stars, pick or reject for the selected picture, written to its XMP sidecar at once and shown through
    // the state. A pick or reject toggle pressed again within deletePressGuardSeconds is a bounce and ignored
    // (it would take the mark straight back). A sidecar that cannot be written changes nothing and is said.
    void rate(const RatingChange& change);

    // True while a delete, restore or rotation started here has not finished.
    bool isBusy() const { return m_pendingTasks > 0; }

Q_SIGNALS:
    void deleteFinished(bool ok);
    void restoreFinished(bool ok);
    void rotateFinished(bool ok);

private:
    struct SelectedFile
    {
        int index = 0;
        QString name;
        QString folder;
    };
    // The selected file and its folder, or nullopt after logging why there is none.
    std::optional<SelectedFile> selectedFile() const;

    void navigateBy(int step, int direction);
    void annotate(HotkeyAction action);
    void deleteSelected();
    void finishDelete(const SelectedFile& file, const QStringList& tags,
                      const std::optional<QString>& trashPath, const QString& error, qint64 startNs,
                      qint64 toIoNs, qint64 ioNs);
    void restoreNewest();
    void finishRestore(const DeletedFileInfo& info, bool ok, bool lost, const platform::PictureMarks& marks);
    void rotateSelected();
    void moveFolder(int step);
    // A short note in the window about what just happened (or did not).
    void tellUser(const QString& message);
    void startRotation(const SelectedFile& file);
    void finishRotate(const SelectedFile& file, const platform::RotationOutcome& outcome);
    void toggleFullScreen();
    void toggleDirPanel();
    // Runs `work` on the thread pool and `done` back on the main thread, unless this dispatcher is gone by
    // then.
    void runInBackground(std::function<std::function<void()>()> work);

    LMRModeState& m_state;
    HotkeyManager& m_manager;
    BrowseChrome* m_chrome;
    FileDeleteService& m_deleteService;
    platform::FileTagStore& m_tags;
    ThumbnailCache& m_cache;
    ThumbnailReloadService& m_reload;
    FolderNavigator* m_navigator;
    std::unique_ptr<FolderNavigator> m_ownNavigator;
    std::unique_ptr<ColorAnnotationService> m_annotations;
    ThumbnailLoader* m_loader;
    RotateFunction m_rotate;
    platform::Clock m_clock;
    PictureRater& m_rater;
    double m_lastDeletePress = -1e9;
    double m_lastTogglePress = -1e9;
    int m_pendingTasks = 0;
    bool m_isRestoring = false;
    bool m_isRotating = false;
    // Turns asked for while one runs (a held key): done one after the other, so none is lost or doubled.
    QList<SelectedFile> m_queuedRotations;
    // History records whose restore failed with no way back left (Trash item gone, or its name taken).
    QList<DeletedFileInfo> m_lostRecords;
};

} // namespace lumaro::browse
