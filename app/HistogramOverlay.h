// SPDX-License-Identifier: GPL-3.0-or-later
// The tone histogram of the selected picture, drawn over the top-right corner of the browsing view.
#pragma once

#include "report/ToneHistogram.h"

#include <QString>
#include <QWidget>

namespace lumaro::browse {
class LMRModeState;
class ThumbnailLoader;
} // namespace lumaro::browse

namespace lumaro::app {

// Main thread. Hidden until toggled; while shown it follows the selection and counts the decoded preview the
// loader holds (its thumbnail until the preview is in) on a pool thread. A result for a picture no longer
// selected is dropped. Clicks pass through to the view below.
class HistogramOverlay : public QWidget
{
    Q_OBJECT
public:
    HistogramOverlay(browse::LMRModeState& state, browse::ThumbnailLoader& loader, QWidget* parent);

    void toggle();
    const QString& shownPath() const { return m_shownPath; }
    const report::ToneHistogram& histogram() const { return m_histogram; }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow();
    void place();
    void present(const QString& path, const report::ToneHistogram& histogram, bool fromPreview);

    browse::LMRModeState& m_state;
    browse::ThumbnailLoader& m_loader;
    QString m_wantedPath;
    QString m_shownPath;
    bool m_shownFromPreview = false;
    report::ToneHistogram m_histogram;
};

} // namespace lumaro::app
