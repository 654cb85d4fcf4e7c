// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FavouritesPanel.h"

#include "app/FavouriteMasonryView.h"
#include "app/FavouriteToggle.h"
#include "app/PictureListWaterfall.h"
#include "app/PictureOpener.h"
#include "app/ToolHost.h"
#include "browse/state/LMRModeState.h"
#include "library/FavourManager.h"
#include "platform/NotificationCenter.h"
#include "platform/files/FileNameCodec.h"

#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QUrl>
#include <QVBoxLayout>

namespace lumaro::app {

FavouritesPanel::FavouritesPanel(ToolHost& host, library::FavourManager& manager, QWidget* parent)
    : QWidget(parent)
    , m_host(host)
    , m_manager(manager)
    , m_summary(new QLabel(this))
    , m_list(new PictureListWaterfall(manager, this))
{
    setToolTip(tr("查看所有已收藏的图像（时间倒序瀑布流）"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_summary);
    layout->addWidget(m_list, 1);
    connect(m_list, &PictureListWaterfall::openRequested, this, &FavouritesPanel::open);
    connect(&platform::NotificationCenter::shared(), &platform::NotificationCenter::posted, this,
            [this](const QString& name) {
                if (name == platform::notifications::favourStateChanged)
                    storeChanged();
            });
    reload();
}

void FavouritesPanel::storeChanged()
{
    if (!isVisible()) {
        m_stale = true;
        return;
    }
    reload();
}

void FavouritesPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (m_stale)
        reload();
}

QStringList FavouritesPanel::shownPaths() const
{
    return m_list->paths();
}

void FavouritesPanel::reload()
{
    m_stale = false;
    const auto favourites = m_manager.favourites();
    if (!favourites) {
        m_summary->setText(tr("无法读取收藏数据库"));
        return;
    }
    QStringList paths;
    int missing = 0;
    FavouriteToggle& marks = m_list->view().favourites();
    for (const library::FavourRecord& record : *favourites) {
        // The list is read fresh: its buttons must show what it lists, whoever marked the picture.
        marks.learn(record);
        paths << record.filePath;
        missing += platform::FileNameCodec::exists(record.filePath) ? 0 : 1;
    }
    // A picture gone from disk stays listed: its disk may just not be mounted.
    m_summary->setText(missing == 0 ? tr("已收藏 %1 张（最近改动在前，双击打开）").arg(paths.size())
                                    : tr("已收藏 %1 张，其中 %2 张现在找不到（存储卡未插入？）").arg(paths.size()).arg(missing));
    m_list->setPaths(paths);
}

void FavouritesPanel::open(const QString& path)
{
    const QFileInfo picture(path);
    browse::LMRModeState& state = m_host.modeState();
    const auto folder = state.currentFolder();
    if (folder && QFileInfo(*folder).canonicalFilePath() == picture.absoluteDir().canonicalPath()) {
        const qsizetype index = state.imageFiles().indexOf(picture.fileName());
        if (index >= 0 && state.select(int(index)))
            return;
    }
    if (auto* opener = dynamic_cast<PictureOpener*>(&m_host))
        opener->openPicture(path);
}

} // namespace lumaro::app
