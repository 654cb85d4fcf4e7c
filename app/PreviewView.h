// SPDX-License-Identifier: GPL-3.0-or-later
// The large picture of the selected file, with its colour tags.
#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

namespace lumaro::browse {
class LMRModeState;
class ThumbnailLoader;
} // namespace lumaro::browse

namespace lumaro::app {

// Main thread. Shows only what belongs to the selected file: its decoded preview, else its thumbnail scaled up,
// else a placeholder; never the picture of a file selected before. When visible it asks the loader for the
// selected file's preview first and its neighbours' after.
class PreviewView : public QWidget
{
    Q_OBJECT
public:
    PreviewView(browse::LMRModeState& state, browse::ThumbnailLoader& loader, QWidget* parent = nullptr);

    // The file whose picture is shown (empty when none), and whether that is the full preview.
    const QString& shownPath() const { return m_path; }
    bool isShowingPreview() const { return m_isPreview; }
    const QImage& shownImage() const { return m_image; }

Q_SIGNALS:
    // A double-click on the picture: where, as shares 0–1 of its width and height (the loupe opens there).
    void loupeRequested(const QPointF& centre);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void selectionChanged();
    void refreshImage();
    QString pathOf(int index) const;

    browse::LMRModeState& m_state;
    browse::ThumbnailLoader& m_loader;
    QString m_path;
    QImage m_image;
    bool m_isPreview = false;
};

} // namespace lumaro::app
