// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FavouritesPanel.h"

#include "app/ToolHost.h"
#include "browse/state/LMRModeState.h"
#include "library/FavourManager.h"
#include "platform/NotificationCenter.h"

#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QUrl>
#include <QVBoxLayout>

namespace lumaro::app {

FavouritesPanel::FavouritesPanel(ToolHost& host, library::FavourManager& manager, QWidget* parent)
    : QWidget(parent)
    , m_host(host)
    , m_manager(manager)
    , m_summary(new QLabel(this))
    , m_list(new QListWidget(this))
{
    setToolTip(tr("查看所有已收藏的图像（时间倒序瀑布流）"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_summary);
    layout->addWidget(m_list, 1);
    connect(m_list, &QListWidget::itemActivated, this, &FavouritesPanel::open);
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
    QStringList paths;
    for (int i = 0; i < m_list->count(); ++i)
        paths << m_list->item(i)->data(Qt::UserRole).toString();
    return paths;
}

void FavouritesPanel::reload()
{
    m_stale = false;
    const auto favourites = m_manager.favourites();
    m_list->clear();
    if (!favourites) {
        m_summary->setText(tr("无法读取收藏数据库"));
        return;
    }
    m_summary->setText(tr("已收藏 %1 张").arg(favourites->size()));
    for (const library::FavourRecord& record : *favourites) {
        const QString when = QDateTime::fromMSecsSinceEpoch(qint64(record.updatedAt * 1000)).toString(
            QStringLiteral("yyyy-MM-dd HH:mm"));
        const QString type = record.favourType ? QStringLiteral("  [%1]").arg(library::storedText(*record.favourType))
                                               : QString();
        auto* item = new QListWidgetItem(record.fileName + type + QStringLiteral("\n") + when + QStringLiteral("  ")
                                             + QFileInfo(record.filePath).path(),
                                         m_list);
        item->setData(Qt::UserRole, record.filePath);
        item->setToolTip(record.filePath);
        if (!QFileInfo::exists(record.filePath))
            item->setForeground(palette().color(QPalette::Disabled, QPalette::Text));
    }
}

void FavouritesPanel::open(QListWidgetItem* item)
{
    const QFileInfo picture(item->data(Qt::UserRole).toString());
    browse::LMRModeState& state = m_host.modeState();
    const auto folder = state.currentFolder();
    if (folder && QFileInfo(*folder).canonicalFilePath() == picture.absoluteDir().canonicalPath()) {
        const qsizetype index = state.imageFiles().indexOf(picture.fileName());
        if (index >= 0 && state.select(int(index)))
            return;
    }
    QDesktopServices::openUrl(QUrl::fromLocalFile(picture.absolutePath()));
}

} // namespace lumaro::app
