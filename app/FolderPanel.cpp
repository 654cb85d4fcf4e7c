// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FolderPanel.h"

#include "app/FolderCardList.h"
#include "app/InBackground.h"
#include "library/FavourManager.h"
#include "browse/state/FileSystemService.h"
#include "browse/state/LMRModeState.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace lumaro::app {

FolderPanel::FolderPanel(browse::LMRModeState& state, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
    , m_folder(new QLabel(this))
    , m_list(new FolderCardList(&library::FavourManager::shared(), this))
    , m_deep(new QCheckBox(tr("深度模式（依次浏览所有子文件夹）"), this))
    , m_deepStatus(new QLabel(this))
{
    m_folder->setWordWrap(true);
    auto* previous = new QPushButton(tr("上一个文件夹"), this);
    auto* next = new QPushButton(tr("下一个文件夹"), this);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(previous);
    buttons->addWidget(next);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_folder);
    layout->addWidget(new QLabel(tr("子文件夹（双击或回车打开）"), this));
    layout->addWidget(m_list, 1);
    layout->addLayout(buttons);
    layout->addWidget(m_deep);
    layout->addWidget(m_deepStatus);
    m_list->setFocusPolicy(Qt::ClickFocus);

    connect(previous, &QPushButton::clicked, this, [this] { Q_EMIT moveRequested(-1); });
    connect(next, &QPushButton::clicked, this, [this] { Q_EMIT moveRequested(1); });
    connect(m_list, &FolderCardList::openRequested, this, &FolderPanel::openRequested);
    connect(m_deep, &QCheckBox::toggled, this, &FolderPanel::setDeepMode);
    connect(&state, &browse::LMRModeState::folderChanged, this, &FolderPanel::folderChanged);
    connect(&state, &browse::LMRModeState::navigationChanged, this, &FolderPanel::refreshDeepLabel);
    folderChanged();
}

QStringList FolderPanel::listedFolders() const
{
    return m_list->folders();
}

void FolderPanel::folderChanged()
{
    const QString folder = m_state.currentFolder().value_or(QString());
    m_folder->setText(folder.isEmpty() ? tr("尚未打开文件夹") : tr("当前文件夹: %1").arg(folder));
    m_list->showFolder(folder);
}

void FolderPanel::setDeepMode(bool on)
{
    if (m_deep->isChecked() != on) {
        m_deep->setChecked(on); // comes back here through toggled()
        return;
    }
    if (!on) {
        m_state.setDeepMode(false);
        refreshDeepLabel();
        return;
    }
    const auto base = m_state.currentFolder();
    if (!base) {
        m_deep->setChecked(false);
        return;
    }
    const QString folder = *base;
    m_deepStatus->setText(tr("正在列出子文件夹…"));
    inBackground(
        this,
        [folder] {
            const auto& fs = browse::FileSystemService::shared();
            return QList<QStringList>{fs.recursiveSubfolders(folder),
                                      fs.subfolders(QFileInfo(folder).absolutePath())};
        },
        [this, folder](const QList<QStringList>& lists) { deepWalkListed(folder, lists.at(0), lists.at(1)); });
}

void FolderPanel::deepWalkListed(const QString& base, const QStringList& walk, const QStringList& siblings)
{
    if (!m_deep->isChecked() || m_state.currentFolder() != base)
        return;
    const QStringList all = QStringList{base} + walk;
    m_state.setDeepMode(true);
    m_state.updateNavigationState(base, base, siblings, all);
    m_state.setCurrentDeepIndex(0);
    refreshDeepLabel();
}

void FolderPanel::refreshDeepLabel()
{
    if (!m_state.isInDeepMode()) {
        m_deepStatus->setText(QString());
        return;
    }
    m_deepStatus->setText(tr("深度模式: 第 %1 / %2 个文件夹")
                              .arg(m_state.currentDeepIndex() + 1)
                              .arg(m_state.recursiveDirectoryList().size()));
}

} // namespace lumaro::app
