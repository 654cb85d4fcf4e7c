// SPDX-License-Identifier: GPL-3.0-or-later
// The "已收藏" view: every favourite picture, newest change first, with its type.
#pragma once

#include <QWidget>

class QLabel;
class QListWidget;
class QListWidgetItem;

namespace lumaro::library {
class FavourManager;
}

namespace lumaro::app {

class ToolHost;

// Main thread only. Reads the store again on "FavourStateChanged", so a heart clicked in any view shows here at
// once (while hidden, only once it is shown again: a click in the waterfall need not wait for the list). A double-click selects the picture when it is in the folder on screen, otherwise shows its folder in the
// file manager. A picture that is gone from disk stays listed, greyed: its disk may just not be mounted.
class FavouritesPanel : public QWidget
{
    Q_OBJECT
public:
    FavouritesPanel(ToolHost& host, library::FavourManager& manager, QWidget* parent = nullptr);

    // The paths shown, top to bottom.
    QStringList shownPaths() const;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void reload();
    void storeChanged();
    void open(QListWidgetItem* item);

    ToolHost& m_host;
    library::FavourManager& m_manager;
    QLabel* m_summary;
    QListWidget* m_list;
    bool m_stale = false;
};

} // namespace lumaro::app
