// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/IndicatorOverlay.h"

#include "browse/state/LMRModeState.h"

#include <QEvent>
#include <QPainter>

namespace lumaro::app {

IndicatorOverlay::IndicatorOverlay(browse::LMRModeState& state, QWidget* parent)
    : QWidget(parent)
    , m_state(state)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    if (parent) {
        parent->installEventFilter(this);
        setGeometry(parent->rect());
    }
    m_fade.setDuration(fadeMs);
    m_fade.setStartValue(1.0);
    m_fade.setKeyValueAt(0.5, 1.0);
    m_fade.setEndValue(0.0);
    connect(&m_fade, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
        m_opacity = value.toDouble();
        update();
    });
    connect(&m_fade, &QVariantAnimation::finished, this, &IndicatorOverlay::faded);
    connect(&state, &browse::LMRModeState::stateChanged, this, &IndicatorOverlay::stateChanged);
}

bool IndicatorOverlay::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parent() && event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return false;
}

void IndicatorOverlay::stateChanged()
{
    if (!isVisible())
        return; // the mode on screen shows the sign
    // A flag raised while its sign is not on screen yet starts the sign.
    if (m_state.isDeleteIndicatorVisible && m_state.deleteIndicatorOpacity >= 1.0) {
        m_state.deleteIndicatorOpacity = 0.99;
        showSign(tr("已删除"), QColor(220, 60, 60));
    } else if (m_state.isRestoreIndicatorVisible && m_state.restoreIndicatorOpacity >= 1.0) {
        m_state.restoreIndicatorOpacity = 0.99;
        showSign(tr("已恢复（还可恢复 %1 个）").arg(m_state.deletedFilesHistory().size()), QColor(60, 170, 90));
    } else if (m_state.isRotateIndicatorVisible && m_state.rotateIndicatorOpacity >= 1.0) {
        m_state.rotateIndicatorOpacity = 0.99;
        showSign(tr("已向左旋转"), QColor(60, 120, 220));
    } else if (m_state.isRotateErrorVisible && m_state.rotateErrorMessage) {
        const QString message = tr("无法旋转: %1").arg(*m_state.rotateErrorMessage);
        m_state.isRotateErrorVisible = false;
        showSign(message, QColor(200, 130, 30));
    }
}

void IndicatorOverlay::showSign(const QString& text, const QColor& color)
{
    m_text = text;
    m_color = color;
    m_opacity = 1.0;
    raise();
    m_fade.stop();
    m_fade.start();
    update();
}

void IndicatorOverlay::faded()
{
    m_text.clear();
    m_opacity = 0;
    m_state.isDeleteIndicatorVisible = false;
    m_state.deleteIndicatorOpacity = 0;
    m_state.isRestoreIndicatorVisible = false;
    m_state.restoreIndicatorOpacity = 0;
    m_state.isRestoreCountVisible = false;
    m_state.isRotateIndicatorVisible = false;
    m_state.rotateIndicatorOpacity = 0;
    m_state.notify();
    update();
}

void IndicatorOverlay::paintEvent(QPaintEvent*)
{
    if (m_text.isEmpty() || m_opacity <= 0)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(m_opacity);
    QFont font = painter.font();
    font.setPointSizeF(font.pointSizeF() * 1.6);
    font.setBold(true);
    painter.setFont(font);
    const QRect text = painter.fontMetrics().boundingRect(m_text).adjusted(-24, -14, 24, 14);
    const QRect box(rect().center() - text.center(), text.size());
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_color);
    painter.drawRoundedRect(box, 12, 12);
    painter.setPen(Qt::white);
    painter.drawText(box, Qt::AlignCenter, m_text);
}

} // namespace lumaro::app
