// SPDX-License-Identifier: GPL-3.0-or-later
// The selected picture's shooting data, drawn over the bottom-left corner of the browsing view.
#pragma once

#include "browse/info/ShootingInfo.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QWidget>

namespace lumaro::browse {
class LMRModeState;
} // namespace lumaro::browse

namespace lumaro::app {

// Main thread. Hidden until toggled; while shown it follows the selection. Each file's data is read once, on
// a pool thread (exiv2 headers, RAW files too), and kept per path for the session; a rating or tag changed
// since is taken from the state. A result for a picture no longer selected is kept but not shown. Clicks pass
// through to the view below.
class ShootingInfoOverlay : public QWidget
{
    Q_OBJECT
public:
    ShootingInfoOverlay(browse::LMRModeState& state, QWidget* parent);

    void toggle();
    const QString& shownPath() const { return m_shownPath; }
    // The lines on screen now ("快门  1/250 s", …); empty while the data is being read.
    QStringList lines() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow();
    void place();

    browse::LMRModeState& m_state;
    QString m_wantedPath;
    QString m_shownPath;
    QHash<QString, browse::ShootingInfo> m_cache;
    QSet<QString> m_reading;
};

} // namespace lumaro::app
