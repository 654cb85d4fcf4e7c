// SPDX-License-Identifier: GPL-3.0-or-later
// The settings: key bindings (grouped, recorded by pressing the key), the grid's columns and how new XMP
// sidecars are named.
#pragma once

#include "browse/hotkeys/HotkeyAction.h"
#include "browse/hotkeys/ViewerAction.h"

#include <QDialog>
#include <QMap>

class QComboBox;

namespace lumaro::browse {
class HotkeyManager;
class LMRModeState;
class PictureRater;
class ViewerHotkeys;
} // namespace lumaro::browse

namespace lumaro::app {

class KeyBindingRow;

// Main thread. Every change applies at once (bindings are stored by HotkeyManager, columns go to the state);
// there is nothing to confirm when closing.
class SettingsDialog : public QDialog
{
    Q_OBJECT
public:
    // Null `viewerKeys` or `rater`: the shared ones.
    SettingsDialog(browse::HotkeyManager& manager, browse::LMRModeState& state, QWidget* parent = nullptr,
                   browse::ViewerHotkeys* viewerKeys = nullptr, browse::PictureRater* rater = nullptr);

    KeyBindingRow* row(browse::HotkeyAction action) const { return m_rows.value(action); }
    KeyBindingRow* row(browse::ViewerAction action) const { return m_viewerRows.value(action); }
    QComboBox& columns() { return *m_columns; }
    QComboBox& sidecarNaming() { return *m_sidecarNaming; }

private:
    QWidget* bindingsPage(browse::HotkeyManager& manager, browse::ViewerHotkeys& viewerKeys);
    QWidget* browsingPage(browse::LMRModeState& state, browse::PictureRater& rater);

    QMap<browse::HotkeyAction, KeyBindingRow*> m_rows;
    QMap<browse::ViewerAction, KeyBindingRow*> m_viewerRows;
    QComboBox* m_columns = nullptr;
    QComboBox* m_sidecarNaming = nullptr;
};

} // namespace lumaro::app
