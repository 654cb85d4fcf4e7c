// SPDX-License-Identifier: GPL-3.0-or-later
// What the window offers the tool panels (vision, grouping, pose, cards, favourites): the shared state and a place
// to show themselves, so each panel is a self-contained widget that the window need not know about.
#pragma once

#include <QString>

class QWidget;

namespace lumaro::browse {
class LMRModeState;
}

namespace lumaro::app {

// Main thread only.
class ToolHost
{
public:
    virtual ~ToolHost() = default;

    virtual browse::LMRModeState& modeState() = 0;
    // Shows `panel` in a dock with a menu entry under "工具"; the host takes ownership.
    virtual void addToolPanel(const QString& title, QWidget* panel) = 0;
    // Lists the current folder again (after a tool renamed, moved or trashed files in it).
    virtual void reloadCurrentFolder() = 0;
    // The parent for dialogs.
    virtual QWidget* dialogParent() = 0;
};

// Creates every tool panel and hands it to the host. Each tool adds its one line in ToolPanels.cpp.
void installToolPanels(ToolHost& host);

} // namespace lumaro::app
