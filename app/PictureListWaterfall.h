// SPDX-License-Identifier: GPL-3.0-or-later
// A waterfall of pictures from any folders, with their heart and type buttons (favourites, bundles).
#pragma once

#include <QStringList>
#include <QWidget>

#include <memory>

namespace lumaro::browse {
class LMRModeState;
class ThumbnailCache;
class ThumbnailLoader;
} // namespace lumaro::browse
namespace lumaro::library {
class FavourManager;
}

namespace lumaro::app {

class FavouriteMasonryView;

// Main thread. Holds a browsing state of its own whose list is the pictures' whole paths, so the window's
// selection and folder are never touched; thumbnails come from a loader and cache of its own. A click selects
// (or marks, on a tile's buttons); a double click asks to open the picture in its folder. A picture that is
// not on disk shows the placeholder of a picture that cannot be read.
class PictureListWaterfall : public QWidget
{
    Q_OBJECT
public:
    PictureListWaterfall(library::FavourManager& favourites, QWidget* parent = nullptr);
    ~PictureListWaterfall() override;

    void setPaths(const QStringList& paths);
    const QStringList& paths() const;
    // The selected picture's path, or empty.
    QString selectedPath() const;
    FavouriteMasonryView& view() { return *m_view; }

Q_SIGNALS:
    void openRequested(const QString& path);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::unique_ptr<browse::ThumbnailCache> m_cache;
    browse::LMRModeState* m_state;
    browse::ThumbnailLoader* m_loader;
    FavouriteMasonryView* m_view;
};

} // namespace lumaro::app
