// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/KeyMonitor.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QWidget>

namespace lumaro::app {

namespace {

bool takesText(const QWidget* widget)
{
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QTextEdit*>(widget)
        || qobject_cast<const QPlainTextEdit*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget)
        || qobject_cast<const QComboBox*>(widget);
}

} // namespace

KeyMonitor::KeyMonitor(QWidget& window, Handler handle, QObject* parent)
    : QObject(parent)
    , m_window(window)
    , m_handle(std::move(handle))
{
}

bool KeyMonitor::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress)
        return false;
    auto* target = qobject_cast<QWidget*>(watched);
    if (!target || target->window() != &m_window || takesText(target))
        return false;
    auto* key = static_cast<QKeyEvent*>(event);
    return m_handle(key->key(), key->modifiers());
}

} // namespace lumaro::app
