// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/MainWindow.h"

#include "browse/state/FolderLoader.h"
#include "browse/state/LMRModeState.h"
#include "browse/state/ModeStatePersistence.h"
#include "platform/QSettingsStore.h"

#include <QDockWidget>
#include <QFileDialog>
#include <QLabel>
#include <QListWidget>
#include <QMenuBar>
#include <QStatusBar>

namespace lumaro::app {

MainWindow::MainWindow(QWidget* parent)
    : QMainWindow(parent)
    , m_state(new browse::LMRModeState(nullptr, this))
    , m_loader(new browse::FolderLoader(*m_state, QStringLiteral("LMRMode1View"), nullptr, this))
    , m_list(new QListWidget(this))
    , m_status(new QLabel(this))
{
    setWindowTitle(tr("Lumaro"));
    resize(1000, 700);
    setCentralWidget(m_list);
    statusBar()->addWidget(m_status, 1);

    QMenu* fileMenu = menuBar()->addMenu(tr("文件"));
    fileMenu->addAction(tr("打开文件夹…"), QKeySequence::Open, this, &MainWindow::chooseFolder);
    fileMenu->addAction(tr("退出"), QKeySequence::Quit, this, &QWidget::close);
    m_toolsMenu = menuBar()->addMenu(tr("工具"));

    connect(m_state, &browse::LMRModeState::imageFilesChanged, this, &MainWindow::showList);
    connect(m_state, &browse::LMRModeState::selectionChanged, this, &MainWindow::showSelection);
    connect(m_list, &QListWidget::currentRowChanged, m_state, [this](int row) { m_state->select(row); });
    installToolPanels(*this);
}

void MainWindow::addToolPanel(const QString& title, QWidget* panel)
{
    auto* dock = new QDockWidget(title, this);
    dock->setObjectName(title);
    dock->setWidget(panel);
    addDockWidget(Qt::RightDockWidgetArea, dock);
    dock->hide();
    m_toolsMenu->addAction(dock->toggleViewAction());
}

void MainWindow::reloadCurrentFolder()
{
    if (const auto folder = m_state->currentFolder())
        m_loader->load(*folder);
}

MainWindow::~MainWindow()
{
    browse::ModeStatePersistence::save(*m_state, platform::QSettingsStore::shared());
}

void MainWindow::chooseFolder()
{
    const QString folder = QFileDialog::getExistingDirectory(this, tr("选择文件夹"),
                                                             m_state->currentFolder().value_or(QString()));
    if (!folder.isEmpty())
        openFolder(folder);
}

void MainWindow::openFolder(const QString& folder)
{
    m_state->setFolderPath(folder, folder, folder);
    m_status->setText(tr("正在加载 %1 …").arg(folder));
    m_loader->load(folder);
}

void MainWindow::showList()
{
    const QSignalBlocker blocker(m_list);
    m_list->clear();
    m_list->addItems(m_state->imageFiles());
    if (m_state->imageFiles().isEmpty())
        m_status->setText(tr("此文件夹中没有图片"));
    showSelection();
}

void MainWindow::showSelection()
{
    const auto index = m_state->selectedImageIndex();
    const QSignalBlocker blocker(m_list);
    m_list->setCurrentRow(index.value_or(-1));
    if (const auto name = m_state->selectedImageFileName())
        m_status->setText(QStringLiteral("%1    %2 / %3").arg(*name).arg(*index + 1).arg(m_state->imageFiles().size()));
}

} // namespace lumaro::app
