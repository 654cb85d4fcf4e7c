// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/SettingsDialog.h"

#include "app/KeyBindingRow.h"
#include "browse/hotkeys/HotkeyManager.h"
#include "browse/hotkeys/ViewerHotkeys.h"
#include "browse/marks/PictureRater.h"
#include "browse/state/LMRModeState.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QPushButton>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>

namespace lumaro::app {

namespace {

using browse::HotkeyAction;

struct Group
{
    QString title;
    HotkeyAction first;
    HotkeyAction last;
};

} // namespace

SettingsDialog::SettingsDialog(browse::HotkeyManager& manager, browse::LMRModeState& state, QWidget* parent,
                               browse::ViewerHotkeys* viewerKeys, browse::PictureRater* rater)
    : QDialog(parent)
{
    setWindowTitle(tr("设置"));
    resize(860, 640);
    auto* tabs = new QTabWidget(this);
    tabs->addTab(bindingsPage(manager, viewerKeys ? *viewerKeys : browse::ViewerHotkeys::shared()),
                 tr("快捷键"));
    tabs->addTab(browsingPage(state, rater ? *rater : browse::PictureRater::shared()), tr("浏览"));
    auto* close = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(close, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    layout->addWidget(close);
}

QWidget* SettingsDialog::bindingsPage(browse::HotkeyManager& manager, browse::ViewerHotkeys& viewerKeys)
{
    const QList<Group> groups{
        {QStringLiteral("方向与文件夹导航"), HotkeyAction::navigatePrevious,
         HotkeyAction::navigateFolderPrevious},
        {QStringLiteral("颜色标签 1-6"), HotkeyAction::annotateRed, HotkeyAction::annotatePurple},
        {tr("文件操作"), HotkeyAction::deleteFile, HotkeyAction::rotateLeft},
        {tr("视图"), HotkeyAction::toggleFullScreen, HotkeyAction::toggleDirPanel},
    };
    auto* page = new QWidget;
    auto* layout = new QVBoxLayout(page);
    for (const Group& group : groups) {
        auto* box = new QGroupBox(group.title, page);
        auto* rows = new QVBoxLayout(box);
        for (HotkeyAction action : browse::allHotkeyActions()) {
            if (action < group.first || action > group.last)
                continue;
            auto* row = new KeyBindingRow(action, manager, box);
            m_rows.insert(action, row);
            rows->addWidget(row);
        }
        layout->addWidget(box);
    }
    // Kept apart from the seventeen above, under their own settings key.
    auto* viewer = new QGroupBox(tr("评级、筛选与查看"), page);
    auto* viewerRows = new QVBoxLayout(viewer);
    for (browse::ViewerAction action : browse::allViewerActions()) {
        auto* row = new KeyBindingRow(action, viewerKeys, viewer);
        m_viewerRows.insert(action, row);
        viewerRows->addWidget(row);
    }
    layout->addWidget(viewer);
    auto* defaults = new QPushButton(tr("恢复默认快捷键"), page);
    connect(defaults, &QPushButton::clicked, &manager, &browse::HotkeyManager::resetToDefaults);
    connect(defaults, &QPushButton::clicked, &viewerKeys, &browse::ViewerHotkeys::resetToDefaults);
    layout->addWidget(defaults, 0, Qt::AlignLeft);
    layout->addStretch();
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setWidget(page);
    return scroll;
}

QWidget* SettingsDialog::browsingPage(browse::LMRModeState& state, browse::PictureRater& rater)
{
    auto* page = new QWidget;
    auto* form = new QFormLayout(page);
    m_columns = new QComboBox(page);
    for (int columns : state.imagesPerRowOptions())
        m_columns->addItem(QString::number(columns), columns);
    m_columns->setCurrentIndex(std::max(0, m_columns->findData(state.imagesPerRow())));
    connect(m_columns, &QComboBox::currentIndexChanged, this,
            [this, &state](int index) { state.setImagesPerRow(m_columns->itemData(index).toInt()); });
    form->addRow(tr("网格列数"), m_columns);
    // Only the name of a new sidecar: an existing one is used whichever name it has.
    m_sidecarNaming = new QComboBox(page);
    m_sidecarNaming->addItem(tr("IMG_1.CR2.xmp（darktable、digiKam）"),
                             int(platform::SidecarNaming::pictureName));
    m_sidecarNaming->addItem(tr("IMG_1.xmp（Lightroom、Capture One）"), int(platform::SidecarNaming::stem));
    m_sidecarNaming->setCurrentIndex(m_sidecarNaming->findData(int(rater.naming())));
    connect(m_sidecarNaming, &QComboBox::currentIndexChanged, this, [this, &rater](int index) {
        rater.setNaming(platform::SidecarNaming(m_sidecarNaming->itemData(index).toInt()));
    });
    form->addRow(tr("新建 XMP 附属文件的命名"), m_sidecarNaming);
    return page;
}

} // namespace lumaro::app
