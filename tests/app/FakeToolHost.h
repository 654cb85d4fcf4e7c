// SPDX-License-Identifier: GPL-3.0-or-later
// A tool panel's host without a window: its own browsing state, no docks, and a count of the folder reloads
// the panel asked for.
#pragma once

#include "app/ToolHost.h"
#include "browse/state/LMRModeState.h"

namespace lumaro::testing {

class FakeToolHost : public app::ToolHost
{
public:
    browse::LMRModeState& modeState() override { return m_state; }
    void addToolPanel(const QString&, QWidget*) override {}
    void reloadCurrentFolder() override { ++reloads; }
    QWidget* dialogParent() override { return nullptr; }

    int reloads = 0;

private:
    browse::LMRModeState m_state;
};

} // namespace lumaro::testing
