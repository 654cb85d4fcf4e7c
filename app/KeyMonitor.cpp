// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/KeyMonitor.h"

#include <QAbstractSpinBox>
#include <QComboBox>
#include <QDockWidget>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSet>
#include <QTextEdit>
#include <QWidget>

namespace lumaro::app {

KeyMonitor::KeyMonitor(QWidget& window, Handler handle, QObject* parent)
    : QObject(parent)
    , m_window(window)
    , m_handle(std::move(handle))
{
}

bool KeyMonitor::takesTyping(const QWidget* widget)
{
    if (const auto* line = qobject_cast<const QLineEdit*>(widget))
        return !line->isReadOnly();
    if (const auto* text = qobject_cast<const QTextEdit*>(widget))
        return !text->isReadOnly();
    if (const auto* plain = qobject_cast<const QPlainTextEdit*>(widget))
        return !plain->isReadOnly();
    if (const auto* spin = qobject_cast<const QAbstractSpinBox*>(widget))
        return !spin->isReadOnly();
    if (const auto* combo = qobject_cast<const QComboBox*>(widget))
        return combo->isEditable();
    return false;
}

bool KeyMonitor::takesNavigation(const QWidget* widget, int key)
{
    static const QSet<int> keys{Qt::Key_Left, Qt::Key_Right, Qt::Key_Up,     Qt::Key_Down,
                                Qt::Key_Home, Qt::Key_End,   Qt::Key_Return, Qt::Key_Enter};
    return widget->property("lumaroTakesNavigationKeys").toBool() && keys.contains(key);
}

bool KeyMonitor::belongsToWindow(const QWidget* widget) const
{
    // Walks parents, not window(): a floating dock is a window of its own but still one of ours.
    for (; widget; widget = widget->parentWidget()) {
        if (widget == &m_window)
            return true;
        if (widget->isWindow() && !qobject_cast<const QDockWidget*>(widget))
            return false; // dialogs (the settings) and menus keep their keys
    }
    return false;
}

bool KeyMonitor::isRepeat(const QKeyEvent& key) const
{
    if (key.isAutoRepeat())
        return true;
    const auto released = m_lastRelease.constFind(key.key());
    // A person cannot release and press a key again within 2 ms; the X server's repeat does it at once.
    return key.timestamp() != 0 && released != m_lastRelease.constEnd() && key.timestamp() >= *released
        && key.timestamp() - *released <= 2;
}

bool KeyMonitor::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
        return false;
    auto* target = qobject_cast<QWidget*>(watched);
    if (!target || !belongsToWindow(target) || takesTyping(target))
        return false;
    auto* key = static_cast<QKeyEvent*>(event);
    if (takesNavigation(target, key->key()))
        return false;
    if (event->type() == QEvent::KeyRelease) {
        m_lastRelease.insert(key->key(), key->timestamp());
        return false;
    }
    return m_handle(key->key(), key->modifiers(), isRepeat(*key));
}

} // namespace lumaro::app
