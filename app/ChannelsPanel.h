// SPDX-License-Identifier: GPL-3.0-or-later
// The channels sidebar: named shortcuts to working folders, one click away.
#pragma once

#include "library/ChannelLocator.h"

#include <QList>
#include <QWidget>

class QLabel;
class QListWidget;
class QListWidgetItem;

namespace lumaro::browse {
class LMRModeState;
}
namespace lumaro::library {
class ChannelStore;
}
namespace lumaro::platform {
class RemovableVolumeMonitor;
}

namespace lumaro::app {

// Main thread. Shows the store's channels in their order; a click opens an available one. Where each
// channel's folder is (or why it cannot be opened) is worked out on the pool when the list changes, when a
// volume is mounted or unmounted, and when the panel is shown; a late answer for an older list is dropped.
// Dragging a channel reorders it, F2 or 重命名 renames it in place; every change goes through the store, and
// a change the store refuses is said under the list and undone on screen.
class ChannelsPanel : public QWidget
{
    Q_OBJECT
public:
    ChannelsPanel(browse::LMRModeState& state, library::ChannelStore& store,
                  platform::RemovableVolumeMonitor* volumes, QWidget* parent = nullptr);

    // What each row says now (tests read them): the channel's place, as last worked out.
    QList<library::ChannelPlace> places() const { return m_places; }
    QStringList names() const;
    QString message() const;
    // Works out the places again.
    void refresh();
    // Opens the channel at `row` when it is available; says why not otherwise.
    void openRow(int row);

Q_SIGNALS:
    void openRequested(const QString& folder);
    // A fresh list of places has been shown.
    void placesShown();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void addCurrentFolder();
    void renameCurrent();
    void removeCurrent();
    void showPlaces(quint64 generation, const QList<library::Channel>& channels,
                    const QList<library::ChannelPlace>& places);
    void itemEdited(QListWidgetItem* item);
    void rowsMoved(int from, int to);
    void say(const std::optional<QString>& refusal);

    browse::LMRModeState& m_state;
    library::ChannelStore& m_store;
    QListWidget* m_list;
    QLabel* m_message;
    QList<library::ChannelPlace> m_places;
    quint64 m_generation = 0;
    bool m_filling = false;
};

} // namespace lumaro::app
