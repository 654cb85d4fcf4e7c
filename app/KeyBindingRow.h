// SPDX-License-Identifier: GPL-3.0-or-later
// One row of the key bindings editor: the action, its binding, a recorder, save and cancel.
#pragma once

#include "browse/hotkeys/HotkeyAction.h"
#include "browse/hotkeys/KeyListener.h"
#include "browse/hotkeys/ViewerAction.h"

#include <QPushButton>
#include <QWidget>

#include <functional>
#include <optional>

class QLabel;

namespace lumaro::browse {
class HotkeyManager;
class ViewerHotkeys;
} // namespace lumaro::browse

namespace lumaro::app {

// The recorder: a click starts listening ("请按下快捷键..."), the next key press is captured through
// KeyListener; losing focus stops listening. Before a click it reads "点击开始录制...". While listening, Tab
// and Shift+Tab are keys to record like any other, not moves to the next field.
class KeyRecorderButton : public QPushButton
{
    Q_OBJECT
public:
    explicit KeyRecorderButton(QWidget* parent = nullptr);
    browse::KeyListener& listener() { return m_listener; }
    void reset();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void refresh();
    browse::KeyListener m_listener;
};

// Main thread. Saving stores the captured key as the action's binding (at once, in the user's settings);
// cancelling keeps the old binding. A captured key that another action is bound to is shown as a clash and
// cannot be saved until that action gets another key. A row serves one of the seventeen culling actions
// (stored by HotkeyManager) or a viewer action (stored by ViewerHotkeys under its own key).
class KeyBindingRow : public QWidget
{
    Q_OBJECT
public:
    KeyBindingRow(browse::HotkeyAction action, browse::HotkeyManager& manager, QWidget* parent = nullptr);
    KeyBindingRow(browse::ViewerAction action, browse::ViewerHotkeys& keys, QWidget* parent = nullptr);

    KeyRecorderButton& recorder() { return *m_recorder; }
    QPushButton& saveButton() { return *m_save; }
    QPushButton& cancelButton() { return *m_cancel; }
    QString bindingText() const;
    // "与“…”冲突" while the captured key belongs to another action, else empty.
    QString clashText() const;

private:
    // What a row reads and writes, whichever store keeps the binding.
    struct Binding
    {
        std::function<browse::Hotkey()> current;
        // Why `hotkey` cannot be this action's ("与“…”冲突"), or nullopt.
        std::function<std::optional<QString>(const browse::Hotkey& hotkey)> clash;
        std::function<void(const browse::Hotkey& hotkey)> store;
    };
    KeyBindingRow(Binding binding, const QString& name, const QString& description, const QColor& colour,
                  QWidget* parent);
    void save();
    void cancel();
    void refresh();

    Binding m_bindingStore;
    QLabel* m_binding;
    QLabel* m_clash;
    KeyRecorderButton* m_recorder;
    QPushButton* m_save;
    QPushButton* m_cancel;
};

} // namespace lumaro::app
