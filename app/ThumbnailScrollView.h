// SPDX-License-Identifier: GPL-3.0-or-later
// What the grid, the film strip and the waterfall share: painting tiles, asking for the thumbnails on screen,
// clicks that select, following the selection.
#pragma once

#include <QAbstractScrollArea>
#include <QElapsedTimer>
#include <QHash>
#include <QImage>
#include <QSet>
#include <QString>

namespace lumaro::browse {
class LMRModeState;
class ThumbnailLoader;
} // namespace lumaro::browse

namespace lumaro::app {

// Main thread. Keeps no cursor of its own: the selection is LMRModeState's. Only a visible view asks the loader
// for thumbnails, so the mode on screen owns the queue. Key presses are left to the window's key monitor.
// The images of the tiles on screen are held here, not looked up in the shared cache at each paint: the cache
// may evict any entry at any time, and a tile on screen must not go blank for it. A tile that comes on screen is
// taken from the cache once, or asked for again when the cache no longer has it.
class ThumbnailScrollView : public QAbstractScrollArea
{
    Q_OBJECT
public:
    ThumbnailScrollView(browse::LMRModeState& state, browse::ThumbnailLoader& loader, QWidget* parent = nullptr);

    // Shown in place of the grid when the list is empty and nothing is loading.
    void setEmptyText(const QString& text);
    const QString& emptyText() const { return m_emptyText; }
    // Indices of the pictures whose tiles are on screen now.
    QList<int> visibleIndices() const;
    // The rectangle of a tile in viewport coordinates.
    QRect viewportRect(int index) const;
    // The image the tile of `index` shows now, or null while it is loading (or off screen).
    QImage tileImage(int index) const;

Q_SIGNALS:
    // Every tile of the first screen after a new list has its image (or its placeholder for a bad file).
    void firstScreenComplete(int tiles);

protected:
    // Layout in content coordinates; subclasses define it.
    virtual QRect itemRect(int index) const = 0;
    virtual QSize contentSize() const = 0;
    virtual void relayout() {}
    // The direction the content scrolls in.
    virtual Qt::Orientation scrollOrientation() const { return Qt::Vertical; }
    QString pathOf(int index) const;
    int count() const;
    browse::LMRModeState& state() const { return m_state; }
    browse::ThumbnailLoader& loader() const { return m_loader; }
    void layoutChanged();

    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    // A decoded thumbnail arrived; kept when its tile is on screen.
    virtual void thumbnailArrived(const QString& path, const QImage& image);

private:
    QPoint offset() const;
    void updateScrollBars();
    void ensureSelectionVisible();
    void requestVisible();
    void listChanged();
    void checkFirstScreen();

    browse::LMRModeState& m_state;
    browse::ThumbnailLoader& m_loader;
    QString m_emptyText;
    bool m_awaitingFirstScreen = false;
    QHash<QString, QImage> m_tiles; // path → image, for the tiles on screen
    QSet<QString> m_onScreen;
};

} // namespace lumaro::app
