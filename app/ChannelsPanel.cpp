// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ChannelsPanel.h"

#include "app/InBackground.h"
#include "browse/state/LMRModeState.h"
#include "library/ChannelStore.h"
#include "platform/volumes/RemovableVolumeMonitor.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace lumaro::app {

ChannelsPanel::ChannelsPanel(browse::LMRModeState& state, library::ChannelStore& store,
                             platform::RemovableVolumeMonitor* volumes, QWidget* parent)
    : QWidget(parent), m_state(state), m_store(store), m_list(new QListWidget(this)),
      m_message(new QLabel(this))
{
    m_list->setDragDropMode(QAbstractItemView::InternalMove);
    m_list->setEditTriggers(QAbstractItemView::EditKeyPressed);
    m_list->setFocusPolicy(Qt::ClickFocus);
    m_message->setWordWrap(true);
    auto* add = new QPushButton(tr("添加当前文件夹"), this);
    auto* rename = new QPushButton(tr("重命名"), this);
    auto* remove = new QPushButton(tr("移除"), this);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(add);
    buttons->addWidget(rename);
    buttons->addWidget(remove);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_list, 1);
    layout->addLayout(buttons);
    layout->addWidget(m_message);

    connect(add, &QPushButton::clicked, this, &ChannelsPanel::addCurrentFolder);
    connect(rename, &QPushButton::clicked, this, &ChannelsPanel::renameCurrent);
    connect(remove, &QPushButton::clicked, this, &ChannelsPanel::removeCurrent);
    connect(m_list, &QListWidget::itemClicked, this,
            [this](QListWidgetItem* item) { openRow(m_list->row(item)); });
    connect(m_list, &QListWidget::itemActivated, this,
            [this](QListWidgetItem* item) { openRow(m_list->row(item)); });
    connect(m_list, &QListWidget::itemChanged, this, &ChannelsPanel::itemEdited);
    connect(m_list->model(), &QAbstractItemModel::rowsMoved, this,
            [this](const QModelIndex&, int start, int, const QModelIndex&, int row) {
                rowsMoved(start, row > start ? row - 1 : row);
            });
    connect(&m_store, &library::ChannelStore::channelsChanged, this, &ChannelsPanel::refresh);
    if (volumes) {
        connect(volumes, &platform::RemovableVolumeMonitor::volumeMounted, this, &ChannelsPanel::refresh);
        connect(volumes, &platform::RemovableVolumeMonitor::volumeUnmounted, this, &ChannelsPanel::refresh);
    }
    refresh();
}

QStringList ChannelsPanel::names() const
{
    QStringList names;
    for (int i = 0; i < m_list->count(); ++i)
        names << m_list->item(i)->data(Qt::UserRole).toString();
    return names;
}

QString ChannelsPanel::message() const
{
    return m_message->text();
}

void ChannelsPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    refresh();
}

void ChannelsPanel::refresh()
{
    const quint64 generation = ++m_generation;
    const QList<library::Channel> channels = m_store.channels();
    inBackground(
        this,
        [channels] {
            library::ChannelLocator locator;
            QList<library::ChannelPlace> places;
            for (const library::Channel& channel : channels)
                places << locator.locate(channel);
            return places;
        },
        [this, generation, channels](const QList<library::ChannelPlace>& places) {
            showPlaces(generation, channels, places);
        });
}

void ChannelsPanel::showPlaces(quint64 generation, const QList<library::Channel>& channels,
                               const QList<library::ChannelPlace>& places)
{
    if (generation != m_generation)
        return; // the list or the volumes changed meanwhile; a newer answer is on its way
    m_places = places;
    const int current = m_list->currentRow();
    m_filling = true;
    m_list->clear();
    for (int i = 0; i < channels.size(); ++i) {
        const library::ChannelPlace& place = places.at(i);
        auto* item = new QListWidgetItem(m_list);
        item->setData(Qt::UserRole, channels.at(i).name);
        item->setText(place.isAvailable() ? channels.at(i).name
                                          : tr("%1（不可用）").arg(channels.at(i).name));
        item->setToolTip(place.isAvailable() ? place.path : place.path + QStringLiteral("\n") + place.reason);
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        if (!place.isAvailable())
            item->setForeground(palette().color(QPalette::Disabled, QPalette::Text));
    }
    m_list->setCurrentRow(std::min(current, int(m_list->count()) - 1));
    m_filling = false;
    Q_EMIT placesShown();
}

void ChannelsPanel::openRow(int row)
{
    if (row < 0 || row >= m_places.size())
        return;
    const library::ChannelPlace& place = m_places.at(row);
    if (!place.isAvailable()) {
        m_message->setText(
            tr("无法打开“%1”: %2").arg(m_list->item(row)->data(Qt::UserRole).toString(), place.reason));
        return;
    }
    m_message->clear();
    Q_EMIT openRequested(place.path);
}

void ChannelsPanel::addCurrentFolder()
{
    const auto folder = m_state.currentFolder();
    if (!folder) {
        m_message->setText(tr("请先打开一个文件夹，再把它添加为频道"));
        return;
    }
    say(m_store.add(*folder));
}

void ChannelsPanel::renameCurrent()
{
    if (QListWidgetItem* item = m_list->currentItem()) {
        item->setText(item->data(Qt::UserRole).toString()); // edit the bare name, not the "unavailable" note
        m_list->editItem(item);
    }
}

void ChannelsPanel::removeCurrent()
{
    if (m_list->currentRow() >= 0)
        say(m_store.remove(m_list->currentRow()));
}

void ChannelsPanel::itemEdited(QListWidgetItem* item)
{
    if (m_filling)
        return;
    const QString name = item->text().trimmed();
    if (name == item->data(Qt::UserRole).toString())
        return;
    say(m_store.rename(m_list->row(item), name));
    if (!m_message->text().isEmpty())
        refresh(); // refused: the old name comes back
}

void ChannelsPanel::rowsMoved(int from, int to)
{
    if (!m_filling && from != to)
        say(m_store.move(from, to));
}

void ChannelsPanel::say(const std::optional<QString>& refusal)
{
    m_message->setText(refusal.value_or(QString()));
}

} // namespace lumaro::app
