// SPDX-License-Identifier: GPL-3.0-or-later
// The "已收藏" view: every favourite picture, newest change first, as a waterfall with its heart and type.
#pragma once

#include <QWidget>

class QLabel;

namespace lumaro::library {
class FavourManager;
}

namespace lumaro::app {

class PictureListWaterfall;
class ToolHost;

// Main thread only. Reads the store again on "FavourStateChanged", so a heart clicked in any view shows here at
// once (while hidden, only once it is shown again: a click in the waterfall need not wait for the list). A double-click selects the picture when it is in the folder on screen, otherwise opens its folder with the
// picture selected. A picture that is gone from disk stays listed (its disk may just not be mounted) and is
// counted above the waterfall.
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
    void open(const QString& path);

    ToolHost& m_host;
    library::FavourManager& m_manager;
    QLabel* m_summary;
    PictureListWaterfall* m_list;
    bool m_stale = false;
};

} // namespace lumaro::app
