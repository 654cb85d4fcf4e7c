// SPDX-License-Identifier: GPL-3.0-or-later
// The application window: owns the one LMRModeState for its whole life, the three browsing modes that share
// it, the key dispatch, the folder panel and the tool panels.
#pragma once

#include "app/PictureOpener.h"
#include "app/ToolHost.h"
#include "browse/hotkeys/BrowseChrome.h"
#include "browse/hotkeys/ViewerAction.h"

#include <QElapsedTimer>
#include <QList>
#include <QMainWindow>

#include <memory>

class QActionGroup;
class QDockWidget;
class QMenu;
class QStackedWidget;

namespace lumaro::browse {
class FolderNavigator;
class FullPictureLoader;
class HotkeyDispatcher;
class HotkeyManager;
class LMRModeState;
class ThumbnailLoader;
} // namespace lumaro::browse

namespace lumaro::app {

class BrowseMode;
class BrowseStatusBar;
class ChannelsPanel;
class CompareView;
class FolderPanel;
class HistogramOverlay;
class HomePage;
class FolderViewMemory;
class KeyMonitor;
class LoupeView;
class ShootingInfoOverlay;

// Main thread. Mode switches save the shared state under the "LMR_" keys and let the next mode read it back.
// A folder is opened from the dialog, from the command line, or by dropping it on the window; an empty or
// unreadable folder shows an empty grid with a line saying so. Each folder's view (window size and place,
// mode, selected picture) is remembered when it is left or the window closes, and comes back when it is
// opened again. The window never grows past the screen it is on, whatever panels are opened.
class MainWindow : public QMainWindow, public ToolHost, public PictureOpener, public browse::BrowseChrome
{
    Q_OBJECT
public:
    enum Mode
    {
        gridMode = 0,
        filmStripMode = 1,
        waterfallMode = 2
    };

    explicit MainWindow(QWidget* parent = nullptr);
    ~MainWindow() override;

    void openFolder(const QString& folder);
    // The home page instead of the pictures; opening a folder leaves it.
    void showHome();
    bool isHomeShown() const;
    HomePage& homePage() { return *m_home; }
    void switchMode(int mode);
    int currentModeIndex() const;
    BrowseMode& mode(int index) const { return *m_modes.at(index); }
    browse::LMRModeState& state() { return *m_state; }
    browse::ThumbnailLoader& thumbnailLoader() { return *m_thumbnails; }
    browse::HotkeyDispatcher& dispatcher() { return *m_dispatcher; }
    BrowseStatusBar& browseStatusBar() { return *m_statusBar; }
    FolderPanel& folderPanel() { return *m_folderPanel; }
    ChannelsPanel& channelsPanel() { return *m_channels; }
    HistogramOverlay& histogramOverlay() { return *m_histogram; }
    LoupeView& loupe() { return *m_loupe; }
    CompareView& compare() { return *m_compare; }
    ShootingInfoOverlay& shootingInfo() { return *m_info; }
    bool isFolderPanelShown() const;
    void showSettings();
    void showKeyHelp();

    // ToolHost
    browse::LMRModeState& modeState() override { return *m_state; }
    void addToolPanel(const QString& title, QWidget* panel) override;
    void reloadCurrentFolder() override;
    QWidget* dialogParent() override { return this; }

    // PictureOpener
    void openPicture(const QString& path) override;

    // BrowseChrome
    void toggleFullScreen() override;
    void toggleFolderPanel() override;
    void showAlert(const QString& title, const QString& message) override;
    void showMessage(const QString& message) override;

protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void buildModes();
    void buildViewers();
    void buildKeyRouting();
    void buildFolderDock();
    // Keeps the thumbnails, the remembered views and the empty-grid line in step with the shown folder.
    void followFolderChanges();
    void buildMenus();
    // Whether a key press in the window was taken: the way out of the loupe, comparison and full screen, then
    // the culling keys, then the histogram and viewer keys.
    bool routeKey(int key, Qt::KeyboardModifiers modifiers, bool isAutoRepeat);
    void performViewerAction(browse::ViewerAction action);
    void buildModeBar();
    void buildChannelsDock();
    void buildHomePage();
    void chooseFolder();
    void folderLoaded(const QString& folder, int count);
    void firstScreenComplete(int tiles);
    void rememberFolderForNextStart();
    void setEmptyText(const QString& text);
    void setFolderTitle(const QString& folder);
    BrowseMode& currentMode() const;
    // Saves how the folder shown until now was looked at; called before another one replaces it.
    void rememberShownFolder();
    // Shrinks the window back onto its screen when a panel pushed it past the edge.
    void fitToScreen();

    browse::LMRModeState* m_state;
    browse::ThumbnailLoader* m_thumbnails;
    QStackedWidget* m_pages; // the browsing modes, or the home page
    QStackedWidget* m_stack; // the browsing modes
    HomePage* m_home = nullptr;
    QList<BrowseMode*> m_modes;
    browse::FolderNavigator* m_navigator;
    browse::HotkeyDispatcher* m_dispatcher;
    KeyMonitor* m_keyMonitor;
    BrowseStatusBar* m_statusBar;
    FolderPanel* m_folderPanel;
    HistogramOverlay* m_histogram;
    browse::FullPictureLoader* m_fullPictures;
    LoupeView* m_loupe;
    CompareView* m_compare;
    ShootingInfoOverlay* m_info;
    QDockWidget* m_folderDock;
    ChannelsPanel* m_channels = nullptr;
    QDockWidget* m_channelsDock = nullptr;
    QDockWidget* m_firstToolDock = nullptr;
    QActionGroup* m_modeActions = nullptr;
    QMenu* m_toolsMenu = nullptr;
    QElapsedTimer m_sinceOpen;
    std::unique_ptr<FolderViewMemory> m_memory;
    QString m_shownFolder;      // the folder whose view is remembered when it is left
    QString m_listedFolder;     // m_shownFolder once its list has come in
    QString m_pendingSelection; // the picture to select again once the folder's list is in
    QString m_folderToRemember; // opened, but not yet shown: remembered for the next start once it is
};

} // namespace lumaro::app
