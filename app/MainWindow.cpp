// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "app/BrowseStatusBar.h"
#include "app/ChannelsPanel.h"
#include "app/CompareView.h"
#include "app/FilmStripMode.h"
#include "app/FolderMapView.h"
#include "app/FolderPanel.h"
#include "app/FolderViewMemory.h"
#include "app/GridPreviewMode.h"
#include "app/HistogramOverlay.h"
#include "app/HomePage.h"
#include "app/KeyHelpDialog.h"
#include "app/KeyMonitor.h"
#include "app/LoupeView.h"
#include "app/PreviewView.h"
#include "app/SettingsDialog.h"
#include "app/ShootingInfoOverlay.h"
#include "app/ThumbnailScrollView.h"
#include "app/WaterfallMode.h"
#include "browse/hotkeys/FolderNavigator.h"
#include "browse/hotkeys/HistogramHotkey.h"
#include "browse/hotkeys/HotkeyDispatcher.h"
#include "browse/hotkeys/HotkeyManager.h"
#include "browse/hotkeys/ViewerHotkeys.h"
#include "browse/marks/RatingChange.h"
#include "browse/state/FileSystemService.h"
#include "browse/state/FolderLoader.h"
#include "browse/state/LMRModeState.h"
#include "browse/state/ModeStatePersistence.h"
#include "browse/thumbnails/FaceCentreFinder.h"
#include "browse/thumbnails/FullPictureLoader.h"
#include "browse/thumbnails/ThumbnailCache.h"
#include "browse/thumbnails/ThumbnailLoader.h"
#include "home/ForecastClient.h"
#include "home/RecentFolders.h"
#include "library/ChannelStore.h"
#include "library/FavourManager.h"
#include "platform/Log.h"
#include "platform/QSettingsStore.h"
#include "platform/files/OneLineName.h"
#include "platform/location/GeoClueLocator.h"
#include "platform/volumes/RemovableVolumeMonitor.h"
#include "platform/volumes/UDisksMountEvents.h"

#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QScrollArea>
#include <QStackedWidget>
#include <QTimer>
#include <QToolBar>

#include <algorithm>

namespace lumaro::app {

namespace {

// A dropped URL that names a local folder, or empty.
QString droppedFolder(const QMimeData* mime)
{
    if (!mime || !mime->hasUrls())
        return {};
    for (const QUrl& url : mime->urls()) {
        const QFileInfo info(url.toLocalFile());
        if (url.isLocalFile() && info.isDir())
            return info.absoluteFilePath();
    }
    return {};
}

} // namespace

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent), m_state(new browse::LMRModeState(&browse::ThumbnailCache::shared(), this)),
      m_thumbnails(new browse::ThumbnailLoader(browse::ThumbnailCache::shared(), {}, {}, this)),
      m_stack(new QStackedWidget(this))
{
    setFolderTitle({});
    setAcceptDrops(true);
    resize(1280, 820);
    m_thumbnails->setRotationFunction(
        [this](const QString& path) { return m_state->rotationOverrideForPath(path); });
    buildModes();
    buildViewers();
    buildKeyRouting();
    m_statusBar = new BrowseStatusBar(*m_state, this);
    setStatusBar(m_statusBar);
    buildFolderDock();
    buildChannelsDock();
    buildHomePage();
    followFolderChanges();
    buildMenus();
    buildModeBar();
    setEmptyText(tr("请打开一个文件夹：文件 → 打开文件夹，或把文件夹拖到窗口中"));
    installToolPanels(*this);
    m_modes.first()->adopt(platform::QSettingsStore::shared());
}

MainWindow::~MainWindow()
{
    qApp->removeEventFilter(m_keyMonitor);
}

void MainWindow::buildModes()
{
    m_modes = {new GridPreviewMode(*m_state, *m_thumbnails, m_stack),
               new FilmStripMode(*m_state, *m_thumbnails, m_stack),
               new WaterfallMode(*m_state, *m_thumbnails, m_stack)};
    for (BrowseMode* mode : m_modes) {
        m_stack->addWidget(mode);
        connect(&mode->folderLoader(), &browse::FolderLoader::loaded, this, &MainWindow::folderLoaded);
        connect(&mode->thumbnails(), &ThumbnailScrollView::firstScreenComplete, this,
                &MainWindow::firstScreenComplete);
    }
    m_pages = new QStackedWidget(this);
    m_pages->addWidget(m_stack);
    setCentralWidget(m_pages);
}

void MainWindow::buildViewers()
{
    const auto rotationOverride = [this](const QString& path) {
        return m_state->rotationOverrideForPath(path);
    };
    m_histogram = new HistogramOverlay(*m_state, *m_thumbnails, m_stack);
    m_fullPictures = new browse::FullPictureLoader({}, this);
    m_fullPictures->setRotationFunction(rotationOverride);
    auto* faces = new browse::FaceCentreFinder({}, this);
    faces->setRotationFunction(rotationOverride);
    m_loupe = new LoupeView(*m_state, *m_thumbnails, *m_fullPictures, m_stack, faces);
    m_compare = new CompareView(*m_state, *m_thumbnails, *m_fullPictures, m_stack, faces);
    m_info = new ShootingInfoOverlay(*m_state, m_stack);
    for (PreviewView* preview : m_stack->findChildren<PreviewView*>())
        connect(preview, &PreviewView::loupeRequested, m_loupe,
                [this](const QPointF& at) { m_loupe->open(at); });
}

void MainWindow::buildKeyRouting()
{
    m_navigator = new browse::FolderNavigator(*m_state, &m_modes.first()->folderLoader(), nullptr, this);
    browse::HotkeyDispatcher::Services services;
    services.navigator = m_navigator;
    services.loader = m_thumbnails;
    m_dispatcher =
        new browse::HotkeyDispatcher(*m_state, browse::HotkeyManager::shared(), this, services, this);
    m_keyMonitor = new KeyMonitor(
        *this,
        [this](int key, Qt::KeyboardModifiers modifiers, bool isAutoRepeat) {
            return routeKey(key, modifiers, isAutoRepeat);
        },
        this);
    qApp->installEventFilter(m_keyMonitor);
}

bool MainWindow::routeKey(int key, Qt::KeyboardModifiers modifiers, bool isAutoRepeat)
{
    if (key == Qt::Key_Escape && m_loupe->isOpen()) {
        m_loupe->close(); // back to fit first; a second Esc leaves full screen
        return true;
    }
    if (key == Qt::Key_Escape && m_compare->isOpen()) {
        m_compare->close();
        return true;
    }
    if (key == Qt::Key_Escape && isFullScreen()) {
        if (!isAutoRepeat)
            toggleFullScreen();
        return true;
    }
    if (isHomeShown())
        return false; // the culling and viewer keys never act on pictures that are not on screen
    if (m_dispatcher->handleKey(key, modifiers, isAutoRepeat))
        return true;
    // The culling actions come first; the histogram and viewer keys never shadow one of them.
    if (browse::HistogramHotkey::shared().matches(key, modifiers)) {
        if (!isAutoRepeat) // a toggle, once per press
            m_histogram->toggle();
        return true;
    }
    const auto viewer = browse::ViewerHotkeys::shared().actionForKey(key, modifiers);
    if (!viewer)
        return false;
    if (!isAutoRepeat) // every viewer key acts once per press
        performViewerAction(*viewer);
    return true;
}

void MainWindow::buildFolderDock()
{
    m_folderPanel = new FolderPanel(*m_state, this);
    m_folderDock = new QDockWidget(tr("文件夹"), this);
    m_folderDock->setObjectName(QStringLiteral("folderPanel"));
    m_folderDock->setWidget(m_folderPanel);
    addDockWidget(Qt::LeftDockWidgetArea, m_folderDock);
    m_folderDock->hide();
    connect(m_folderPanel, &FolderPanel::openRequested, this, &MainWindow::openFolder);
    connect(m_folderPanel, &FolderPanel::moveRequested, m_navigator, &browse::FolderNavigator::move);
    FolderMapView& map = static_cast<WaterfallMode*>(m_modes.at(waterfallMode))->folderMap();
    connect(&map, &FolderMapView::openRequested, this, &MainWindow::openFolder);
    connect(&map, &FolderMapView::moveRequested, m_navigator, &browse::FolderNavigator::move);
}

void MainWindow::followFolderChanges()
{
    m_memory = std::make_unique<FolderViewMemory>(platform::QSettingsStore::shared());
    connect(m_state, &browse::LMRModeState::folderChanged, this, [this] {
        const QString folder = m_state->currentFolder().value_or(QString());
        m_thumbnails->setFolder(folder);
        if (folder == m_shownFolder)
            return;
        rememberShownFolder();
        m_shownFolder = folder;
        const auto view = m_memory->recall(folder);
        m_pendingSelection = view ? view->selectedFile : QString();
    });
    connect(m_navigator, &browse::FolderNavigator::folderChanged, this, [this] { m_sinceOpen.start(); });
    connect(m_state, &browse::LMRModeState::pictureFilterChanged, this, [this] {
        if (m_state->pictureFilter().isActive())
            setEmptyText(tr("没有符合筛选条件的图片（%1）；按 %2 清除筛选")
                             .arg(m_state->pictureFilter().description(),
                                  browse::ViewerHotkeys::shared()
                                      .hotkey(browse::ViewerAction::clearFilter)
                                      .displayText()));
        else if (!m_state->folderFiles().isEmpty())
            setEmptyText(tr("此文件夹中没有可浏览的图片"));
    });
}

void MainWindow::performViewerAction(browse::ViewerAction action)
{
    using browse::RatingChange;
    using browse::ViewerAction;
    if (const auto stars = browse::starsOf(action))
        return m_dispatcher->rate(RatingChange::toStars(*stars));
    switch (action) {
    case ViewerAction::togglePick:
        return m_dispatcher->rate({RatingChange::Kind::togglePick});
    case ViewerAction::toggleReject:
        return m_dispatcher->rate({RatingChange::Kind::toggleReject});
    case ViewerAction::toggleLoupe:
        if (m_compare->isOpen())
            return m_compare->toggleZoom(); // every pane at 100 %, or all fitted again
        m_loupe->isOpen() ? m_loupe->close() : m_loupe->open();
        if (m_info->isVisible())
            m_info->raise(); // the data stays over the loupe
        return;
    case ViewerAction::toggleInfo:
        return m_info->toggle();
    case ViewerAction::showHelp:
        return showKeyHelp();
    case ViewerAction::filterPicks:
        return m_state->setPictureFilter(m_state->pictureFilter().withPicksToggled());
    case ViewerAction::filterStars:
        return m_state->setPictureFilter(m_state->pictureFilter().withNextMinStars());
    case ViewerAction::filterColour:
        return m_state->setPictureFilter(m_state->pictureFilter().withNextColour());
    case ViewerAction::filterRejects:
        return m_state->setPictureFilter(m_state->pictureFilter().withRejectsToggled());
    case ViewerAction::clearFilter:
        return m_state->setPictureFilter({});
    case ViewerAction::toggleCompare:
        if (m_loupe->isOpen())
            m_loupe->close();
        m_compare->step();
        if (m_info->isVisible())
            m_info->raise();
        return;
    default:
        return;
    }
}

void MainWindow::buildMenus()
{
    QMenu* file = menuBar()->addMenu(tr("文件"));
    file->addAction(tr("打开文件夹…"), QKeySequence::Open, this, &MainWindow::chooseFolder);
    file->addAction(tr("重新载入"), QKeySequence::Refresh, this, &MainWindow::reloadCurrentFolder);
    file->addSeparator();
    file->addAction(tr("设置…"), QKeySequence::Preferences, this, &MainWindow::showSettings);
    file->addSeparator();
    file->addAction(tr("退出"), QKeySequence::Quit, this, &QWidget::close);
    QMenu* view = menuBar()->addMenu(tr("显示"));
    view->addAction(m_folderDock->toggleViewAction());
    view->addAction(m_channelsDock->toggleViewAction());
    view->addAction(tr("首页"), QKeySequence(Qt::ALT | Qt::Key_Home), this, &MainWindow::showHome);
    view->addAction(tr("全屏"), QKeySequence::FullScreen, this, &MainWindow::toggleFullScreen);
    // F1 is no help key here: it is the red key's twin (see the key names).
    view->addAction(tr("快捷键帮助"), this, &MainWindow::showKeyHelp);
    m_toolsMenu = menuBar()->addMenu(tr("工具"));
}

void MainWindow::buildChannelsDock()
{
    auto* volumes = new platform::RemovableVolumeMonitor(
        platform::RemovableVolumeMonitor::systemRemovableVolumes(), this);
    volumes->startWithEvents(new platform::UDisksMountEvents(volumes));
    m_channels = new ChannelsPanel(*m_state, library::ChannelStore::shared(), volumes, this);
    m_channelsDock = new QDockWidget(tr("频道"), this);
    m_channelsDock->setObjectName(QStringLiteral("channelsPanel"));
    m_channelsDock->setWidget(m_channels);
    addDockWidget(Qt::LeftDockWidgetArea, m_channelsDock);
    connect(m_channels, &ChannelsPanel::openRequested, this, &MainWindow::openFolder);
}

void MainWindow::buildHomePage()
{
    m_home = new HomePage(
        platform::QSettingsStore::shared(), library::ChannelStore::shared(),
        &library::FavourManager::shared(),
        new home::ForecastClient(home::ForecastClient::defaultBaseUrl(), platform::systemClock(), {}, this),
        new platform::GeoClueLocator(this), m_pages);
    m_pages->addWidget(m_home);
    connect(m_home, &HomePage::openRequested, this, &MainWindow::openFolder);
}

void MainWindow::showHome()
{
    m_pages->setCurrentWidget(m_home);
    setFolderTitle({});
}

bool MainWindow::isHomeShown() const
{
    return m_pages->currentWidget() == m_home;
}

void MainWindow::buildModeBar()
{
    QToolBar* bar = addToolBar(tr("浏览模式"));
    bar->setObjectName(QStringLiteral("modeBar"));
    bar->setMovable(false);
    m_modeActions = new QActionGroup(this);
    for (int i = 0; i < m_modes.size(); ++i) {
        QAction* action = bar->addAction(m_modes.at(i)->title());
        action->setCheckable(true);
        action->setChecked(i == 0);
        action->setShortcut(QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + i)));
        action->setData(i);
        m_modeActions->addAction(action);
    }
    connect(m_modeActions, &QActionGroup::triggered, this,
            [this](QAction* action) { switchMode(action->data().toInt()); });
    bar->addSeparator();
    bar->addAction(tr("首页"), this, &MainWindow::showHome)
        ->setToolTip(tr("首页：最近的文件夹、本周的拍摄与天气 (Alt+Home)"));
    bar->addAction(tr("打开文件夹"), this, &MainWindow::chooseFolder);
    bar->addAction(m_folderDock->toggleViewAction());
    bar->addAction(tr("设置"), this, &MainWindow::showSettings);
}

int MainWindow::currentModeIndex() const
{
    return m_stack->currentIndex();
}

BrowseMode& MainWindow::currentMode() const
{
    return *m_modes.at(m_stack->currentIndex());
}

void MainWindow::switchMode(int mode)
{
    if (mode < 0 || mode >= m_modes.size() || mode == currentModeIndex())
        return;
    platform::SettingsStore& store = platform::QSettingsStore::shared();
    browse::ModeStatePersistence::save(*m_state, store);
    m_stack->setCurrentIndex(mode);
    m_modes.at(mode)->adopt(store);
    m_modeActions->actions().at(mode)->setChecked(true);
    m_modes.at(mode)->thumbnails().setFocus();
}

void MainWindow::chooseFolder()
{
    const QString folder = QFileDialog::getExistingDirectory(
        this, tr("选择文件夹"), m_state->currentFolder().value_or(QDir::homePath()));
    if (!folder.isEmpty())
        openFolder(folder);
}

void MainWindow::openFolder(const QString& folder)
{
    const QString path = QDir::cleanPath(QFileInfo(folder).absoluteFilePath());
    m_pages->setCurrentWidget(m_stack);
    home::RecentFolders(platform::QSettingsStore::shared()).remember(path);
    m_folderPanel->setDeepMode(false);
    m_sinceOpen.start();
    const auto view = m_memory->recall(path);
    if (path != m_shownFolder || m_listedFolder != path) {
        rememberShownFolder();
        if (view && !isFullScreen()) {
            restoreGeometry(view->geometry);
            fitToScreen();
            switchMode(view->mode);
        }
        m_shownFolder = path;
        m_listedFolder.clear();
        m_pendingSelection = view ? view->selectedFile : QString();
    }
    m_state->setFolderPath(path, path, path);
    m_state->setFolderBookmarkData(browse::FileSystemService::shared().createBookmarkData(path));
    m_state->clearSelection();
    setFolderTitle(path);
    currentMode().folderLoader().load(path);
    // Remembered only once it has been shown: a folder whose pictures brought the app down must not be
    // reopened by every later start.
    m_folderToRemember = path;
}

void MainWindow::openPicture(const QString& path)
{
    const QFileInfo picture(path);
    openFolder(picture.absolutePath());
    m_pendingSelection = picture.fileName(); // selected once the folder's list is in
}

void MainWindow::rememberFolderForNextStart()
{
    if (m_folderToRemember.isEmpty())
        return;
    platform::QSettingsStore::shared().setString(browse::settingsKeys::originalFolderPath,
                                                 m_folderToRemember);
    m_folderToRemember.clear();
}

void MainWindow::reloadCurrentFolder()
{
    const auto folder = m_state->currentFolder();
    if (!folder)
        return;
    // Before the list comes back, so the views ask again for what failed or changed.
    m_thumbnails->refresh();
    m_fullPictures->refresh();
    currentMode().folderLoader().load(*folder);
}

void MainWindow::setFolderTitle(const QString& folder)
{
    // The platform adds the application's name after a title that does not already end with it.
    const QString app = QStringLiteral("Lumaro");
    setWindowTitle(folder.isEmpty() ? app
                                    : QStringLiteral("%1 — %2").arg(
                                          platform::OneLineName::of(QFileInfo(folder).fileName()), app));
}

void MainWindow::rememberShownFolder()
{
    if (m_shownFolder.isEmpty() || m_listedFolder != m_shownFolder)
        return; // nothing of it was shown yet
    FolderViewMemory::View view;
    view.geometry = saveGeometry();
    view.mode = currentModeIndex();
    view.selectedFile = m_state->selectedImageFileName().value_or(QString());
    m_memory->remember(m_shownFolder, view);
}

void MainWindow::folderLoaded(const QString& folder, int count)
{
    setFolderTitle(folder);
    if (QDir::cleanPath(folder) == QDir::cleanPath(m_shownFolder))
        m_listedFolder = m_shownFolder;
    if (!m_pendingSelection.isEmpty() && QDir::cleanPath(folder) == QDir::cleanPath(m_shownFolder)) {
        const qsizetype at = m_state->imageFiles().indexOf(m_pendingSelection);
        m_pendingSelection.clear();
        if (at >= 0)
            m_state->select(int(at));
    }
    if (count > 0)
        return;
    const QFileInfo info(folder);
    if (!info.exists()) {
        setEmptyText(tr("文件夹不存在: %1").arg(folder));
    } else if (!info.isDir() || !info.isReadable() || !info.isExecutable()) {
        setEmptyText(tr("无法读取此文件夹（权限不足？）: %1").arg(folder));
    } else {
        setEmptyText(tr("此文件夹中没有可浏览的图片"));
        if (folder == m_folderToRemember)
            rememberFolderForNextStart(); // nothing to draw: the empty folder is on screen now
    }
}

void MainWindow::firstScreenComplete(int tiles)
{
    rememberFolderForNextStart();
    if (!m_sinceOpen.isValid())
        return;
    const double seconds = double(m_sinceOpen.nsecsElapsed()) / 1e9;
    m_sinceOpen.invalidate();
    platform::Log::raw(QStringLiteral("PERF-FIRST-SCREEN: 打开文件夹到首屏缩略图绘制完成 %1 s, %2 张")
                           .arg(seconds, 0, 'f', 3)
                           .arg(tiles));
    if (qEnvironmentVariableIsSet("LUMARO_QUIT_AFTER_FIRST_SCREEN"))
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
}

void MainWindow::setEmptyText(const QString& text)
{
    for (BrowseMode* mode : m_modes)
        mode->thumbnails().setEmptyText(text);
}

void MainWindow::showSettings()
{
    SettingsDialog dialog(browse::HotkeyManager::shared(), *m_state, this);
    dialog.exec();
}

void MainWindow::showKeyHelp()
{
    auto* help = new KeyHelpDialog(this);
    help->setAttribute(Qt::WA_DeleteOnClose);
    help->open(); // not exec(): the key dispatch goes on behind it
}

void MainWindow::addToolPanel(const QString& title, QWidget* panel)
{
    auto* dock = new QDockWidget(title, this);
    dock->setObjectName(title);
    // A panel's own minimum size would otherwise become the window's: it scrolls inside its dock instead.
    auto* scroller = new QScrollArea(dock);
    scroller->setWidgetResizable(true);
    scroller->setFrameShape(QFrame::NoFrame);
    scroller->setWidget(panel);
    dock->setWidget(scroller);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    // One stack of tabs on the right: panels opened together share its height instead of piling theirs up.
    if (m_firstToolDock)
        tabifyDockWidget(m_firstToolDock, dock);
    else
        m_firstToolDock = dock;
    dock->hide();
    connect(dock, &QDockWidget::visibilityChanged, this,
            [this] { QTimer::singleShot(0, this, &MainWindow::fitToScreen); });
    connect(dock->toggleViewAction(), &QAction::triggered, dock, [dock](bool shown) {
        if (shown)
            dock->raise(); // the panel just opened is the tab in front
    });
    m_toolsMenu->addAction(dock->toggleViewAction());
}

void MainWindow::fitToScreen()
{
    if (isFullScreen() || isMaximized())
        return;
    const QScreen* display = screen();
    if (!display)
        return;
    const QRect available = display->availableGeometry();
    const QRect frame = frameGeometry();
    const QSize margins = frame.size() - geometry().size();
    const QSize wanted = size().boundedTo(available.size() - margins);
    if (wanted != size())
        resize(wanted);
    // Back onto the screen when the bottom or the right edge ran off it.
    QPoint at = frameGeometry().topLeft();
    at.setX(std::clamp(at.x(), available.left(),
                       std::max(available.left(), available.right() - frameGeometry().width() + 1)));
    at.setY(std::clamp(at.y(), available.top(),
                       std::max(available.top(), available.bottom() - frameGeometry().height() + 1)));
    if (at != frameGeometry().topLeft())
        move(at);
}

void MainWindow::toggleFullScreen()
{
    if (isFullScreen())
        showNormal();
    else
        showFullScreen();
}

bool MainWindow::isFolderPanelShown() const
{
    return !m_folderDock->isHidden();
}

void MainWindow::toggleFolderPanel()
{
    m_folderDock->setVisible(m_folderDock->isHidden());
}

void MainWindow::showAlert(const QString& title, const QString& message)
{
    auto* box = new QMessageBox(QMessageBox::Warning, title, message, QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open(); // not exec(): the event loop, and the key dispatch, go on
}

void MainWindow::showMessage(const QString& message)
{
    m_statusBar->showMessage(message, 6000);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (!droppedFolder(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    const QString folder = droppedFolder(event->mimeData());
    if (folder.isEmpty())
        return;
    event->acceptProposedAction();
    openFolder(folder);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    rememberShownFolder();
    browse::ModeStatePersistence::save(*m_state, platform::QSettingsStore::shared());
    QMainWindow::closeEvent(event);
}

} // namespace lumaro::app
