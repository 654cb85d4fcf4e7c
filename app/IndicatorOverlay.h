// SPDX-License-Identifier: GPL-3.0-or-later
// The short-lived signs of a delete, a restore and a rotation (and a rotation's error) over the browsing view.
#pragma once

#include <QVariantAnimation>
#include <QWidget>

namespace lumaro::browse {
class LMRModeState;
}

namespace lumaro::app {

// Main thread. Watches the state's indicator flags: when the dispatcher raises one, the sign appears at full
// opacity, fades out, and the flag is lowered again when it is gone. Lets mouse events through.
class IndicatorOverlay : public QWidget
{
    Q_OBJECT
public:
    static constexpr int fadeMs = 1200;

    explicit IndicatorOverlay(browse::LMRModeState& state, QWidget* parent = nullptr);

    // The text shown now, empty when nothing is shown (tests read it).
    QString currentText() const { return m_text; }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void stateChanged();
    void showSign(const QString& text, const QColor& color);
    void faded();

    browse::LMRModeState& m_state;
    QVariantAnimation m_fade;
    QString m_text;
    QColor m_color;
    double m_opacity = 0;
};

} // namespace lumaro::app
