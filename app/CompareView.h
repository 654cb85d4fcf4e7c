// SPDX-License-Identifier: GPL-3.0-or-later
// Two to four pictures side by side, zoomed and panned together: which frame of a burst is sharpest.
#pragma once

#include "app/ZoomFrame.h"

#include <QImage>
#include <QPointF>
#include <QStringList>
#include <QWidget>

namespace lumaro::browse {
class FaceCentreFinder;
class FullPictureLoader;
class LMRModeState;
class ThumbnailLoader;
} // namespace lumaro::browse

namespace lumaro::app {

// Main thread. Covers its parent while open. The panes show a run of neighbouring pictures that holds the
// selection (the selection first when it opens); moving the selection inside the run moves the highlight,
// past its ends the run moves along. A click on a pane selects its picture, so the star and pick keys act on
// it. All panes share one zoom (fit, 100 %, 200 %) and one place looked at: the wheel, a drag or the loupe
// key change them all; the loupe key from fit looks at the selected picture's face when one was found. Until
// a pane's full-size decode is in, its picture's own preview is shown fitted, never another file's.
class CompareView : public QWidget
{
    Q_OBJECT
public:
    static constexpr int minPanes = 2;
    static constexpr int maxPanes = 4;

    CompareView(browse::LMRModeState& state, browse::ThumbnailLoader& previews,
                browse::FullPictureLoader& full, QWidget* parent, browse::FaceCentreFinder* faces = nullptr);

    // The compare key: closed → 2 panes → 3 → 4 → closed. Fewer than two pictures: stays closed.
    void step();
    void open(int panes);
    void close();
    bool isOpen() const { return isVisible(); }

    const QStringList& shownPaths() const { return m_paths; }
    const ZoomFrame& frame() const { return m_frame; }
    bool isShowingFullSize(const QString& path) const;
    void zoomBy(int steps);
    // Fit ↔ 100 %.
    void toggleZoom();
    // The pane that holds `point` (in this widget's coordinates), or −1.
    int paneAt(const QPointF& point) const;

    // The first index of the run of `panes` pictures out of `count` that holds `selected`, moving `start`
    // as little as possible. Pure.
    static int runStart(int start, int selected, int panes, int count);

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow();
    QRect paneRect(int pane) const;
    // The picture of `path` to draw now, and whether it is the full-size one.
    QImage imageFor(const QString& path, bool* isFull) const;

    browse::LMRModeState& m_state;
    browse::ThumbnailLoader& m_previews;
    browse::FullPictureLoader& m_full;
    browse::FaceCentreFinder* m_faces;
    int m_panes = minPanes;
    int m_start = 0;
    QStringList m_paths;
    ZoomFrame m_frame{ZoomFrame::fit};
    QPointF m_pressedAt;
    QPointF m_dragFrom;
    int m_dragPane = -1;
};

} // namespace lumaro::app
