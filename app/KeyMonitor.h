// SPDX-License-Identifier: GPL-3.0-or-later
// Turns key presses in the browsing window into keyboard actions, whichever mode is shown.
#pragma once

#include <QHash>
#include <QObject>

#include <functional>

class QKeyEvent;
class QWidget;

namespace lumaro::app {

// Main thread. Installed on the application, it sees a key press before the focused widget does. It leaves alone
// key presses for other windows (the settings, where a binding may be being recorded) and for a text field the
// user can type into; everything else of the window and its docked panels, floating or not, goes to `handle`
// (a read-only text box or a button that took the focus must not swallow the culling keys), and a press that an
// action was bound to is consumed. `isAutoRepeat` tells a held key's repeats from a real press: Qt's own flag,
// or, since X11 sends each repeat as a release and a press of the same server time and Qt only flags it when
// the press is already queued (not on a busy machine), a press whose time is its key's last release's.
class KeyMonitor : public QObject
{
    Q_OBJECT
public:
    using Handler = std::function<bool(int qtKey, Qt::KeyboardModifiers modifiers, bool isAutoRepeat)>;
    KeyMonitor(QWidget& window, Handler handle, QObject* parent = nullptr);

    // Whether typing into `widget` would change its text (an editable line, text box, spin box or combo box).
    static bool takesTyping(const QWidget* widget);
    // A list that moves its own cursor with the arrows and opens with Enter (the folder cards) while it has
    // the focus; it says so with the property "lumaroTakesNavigationKeys". The culling keys still act.
    static bool takesNavigation(const QWidget* widget, int key);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool belongsToWindow(const QWidget* widget) const;
    bool isRepeat(const QKeyEvent& key) const;

    QWidget& m_window;
    Handler m_handle;
    QHash<int, quint64> m_lastRelease; // key → time of its last release
};

} // namespace lumaro::app
