// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BrowseMode.h"

#include "app/IndicatorOverlay.h"
#include "browse/state/FolderLoader.h"
#include "browse/state/LMRModeState.h"
#include "browse/state/ModeStatePersistence.h"
#include "platform/Log.h"

namespace lumaro::app {

BrowseMode::BrowseMode(QString viewName, QString title, browse::LMRModeState& state, QWidget* parent)
    : QWidget(parent)
    , m_viewName(std::move(viewName))
    , m_title(std::move(title))
    , m_state(state)
    , m_folderLoader(new browse::FolderLoader(state, m_viewName, nullptr, this))
{
}

BrowseMode::~BrowseMode() = default;

void BrowseMode::addOverlay()
{
    m_overlay = new IndicatorOverlay(m_state, this);
}

void BrowseMode::adopt(const platform::SettingsStore& store)
{
    browse::ModeStatePersistence::load(m_state, store);
    platform::Log::line(m_viewName, QStringLiteral("初始化完成，使用共享状态"));
}

} // namespace lumaro::app
