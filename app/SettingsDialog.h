// SPDX-License-Identifier: GPL-3.0-or-later
// The settings: key bindings (grouped, recorded by pressing the key) and the grid's columns.
#pragma once

#include "browse/hotkeys/HotkeyAction.h"

#include <QDialog>
#include <QMap>

class QComboBox;

namespace lumaro::browse {
class HotkeyManager;
class LMRModeState;
} // namespace lumaro::browse

namespace lumaro::app {

class KeyBindingRow;

// Main thread. Every change applies at once (bindings are stored by HotkeyManager, columns go to the state);
// there is nothing to confirm when closing.
class SettingsDialog : public QDialog
{
    Q_OBJECT
public:
    SettingsDialog(browse::HotkeyManager& manager, browse::LMRModeState& state, QWidget* parent = nullptr);

    KeyBindingRow* row(browse::HotkeyAction action) const { return m_rows.value(action); }
    QComboBox& columns() { return *m_columns; }

private:
    QWidget* bindingsPage(browse::HotkeyManager& manager);
    QWidget* browsingPage(browse::LMRModeState& state);

    QMap<browse::HotkeyAction, KeyBindingRow*> m_rows;
    QComboBox* m_columns = nullptr;
};

} // namespace lumaro::app
