// SPDX-License-Identifier: GPL-3.0-or-later
// The 100 % loupe: the selected picture at full size over the browsing view, to check focus frame by frame.
#pragma once

#include "app/ZoomFrame.h"

#include <QImage>
#include <QPointF>
#include <QString>
#include <QWidget>

#include <optional>

namespace lumaro::browse {
class FaceCentreFinder;
class FullPictureLoader;
class LMRModeState;
class ThumbnailLoader;
} // namespace lumaro::browse

namespace lumaro::app {

// Main thread. Covers its parent while open and follows the selection: moving to the next or previous
// picture keeps the zoom and the place looked at (as a share of the picture), so a burst is compared at the
// same spot. Opened without a point, it looks at the picture's main face when the finder sees one (found off
// the main thread; until then, and without a face, the middle), unless the user has panned meanwhile. Zoom
// steps: fit, 100 %, 200 % (the wheel); a drag pans. Until the full-size decode of the selected file is in,
// that file's own preview is shown fitted with a line saying so: never another file's. Keys stay with the
// window's key dispatch (arrows, ratings, Esc and the loupe key close it).
class LoupeView : public QWidget
{
    Q_OBJECT
public:
    static constexpr double fitZoom = ZoomFrame::fit;

    LoupeView(browse::LMRModeState& state, browse::ThumbnailLoader& previews, browse::FullPictureLoader& full,
              QWidget* parent, browse::FaceCentreFinder* faces = nullptr);

    // Opens at 100 % on `centre` (a point of the picture, as shares 0–1 of its width and height), else on the
    // picture's main face, else its middle.
    void open(std::optional<QPointF> centre = std::nullopt);
    void close();
    bool isOpen() const { return isVisible(); }

    double zoom() const { return m_frame.zoom; }
    QPointF centre() const { return m_frame.centre; }
    const QString& shownPath() const { return m_path; }
    bool isShowingFullSize() const { return m_isFull; }
    void zoomBy(int steps);

protected:
    void paintEvent(QPaintEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow();
    void refresh();
    void lookAtFace();
    QRectF imageRect() const;

    browse::LMRModeState& m_state;
    browse::ThumbnailLoader& m_previews;
    browse::FullPictureLoader& m_full;
    browse::FaceCentreFinder* m_faces;
    QString m_path;
    QImage m_image;
    bool m_isFull = false;
    ZoomFrame m_frame;
    QPointF m_dragFrom;
    QString
        m_faceFor; // the picture the loupe was opened on without a point: its face is looked at when found
};

} // namespace lumaro::app
