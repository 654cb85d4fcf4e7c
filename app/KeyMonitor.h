// SPDX-License-Identifier: GPL-3.0-or-later
// Turns key presses in the browsing window into keyboard actions, whichever mode is shown.
#pragma once

#include <QObject>

#include <functional>

class QWidget;

namespace lumaro::app {

// Main thread. Installed on the application, it sees a key press before the focused widget does. It leaves alone
// key presses for other windows (the settings, where a binding may be being recorded) and for text fields; the
// rest go to `handle`, and a press that an action was bound to is consumed.
class KeyMonitor : public QObject
{
    Q_OBJECT
public:
    using Handler = std::function<bool(int qtKey, Qt::KeyboardModifiers modifiers)>;
    KeyMonitor(QWidget& window, Handler handle, QObject* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget& m_window;
    Handler m_handle;
};

} // namespace lumaro::app
