// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/hotkeys/ViewerAction.h"

namespace lumaro::browse {

const QList<ViewerAction>& allViewerActions()
{
    static const QList<ViewerAction> all{
        ViewerAction::rate0,       ViewerAction::rate1,        ViewerAction::rate2,
        ViewerAction::rate3,       ViewerAction::rate4,        ViewerAction::rate5,
        ViewerAction::togglePick,  ViewerAction::toggleReject, ViewerAction::toggleLoupe,
        ViewerAction::toggleInfo,  ViewerAction::showHelp,     ViewerAction::filterPicks,
        ViewerAction::filterStars, ViewerAction::filterColour, ViewerAction::filterRejects,
        ViewerAction::clearFilter, ViewerAction::toggleCompare};
    return all;
}

std::optional<int> starsOf(ViewerAction action)
{
    if (action >= ViewerAction::rate0 && action <= ViewerAction::rate5)
        return int(action) - int(ViewerAction::rate0);
    return std::nullopt;
}

QString rawValue(ViewerAction action)
{
    if (const auto stars = starsOf(action))
        return QStringLiteral("rate_%1").arg(*stars);
    switch (action) {
    case ViewerAction::togglePick:
        return QStringLiteral("toggle_pick");
    case ViewerAction::toggleReject:
        return QStringLiteral("toggle_reject");
    case ViewerAction::toggleLoupe:
        return QStringLiteral("toggle_loupe");
    case ViewerAction::toggleInfo:
        return QStringLiteral("toggle_info");
    case ViewerAction::showHelp:
        return QStringLiteral("show_help");
    case ViewerAction::filterPicks:
        return QStringLiteral("filter_picks");
    case ViewerAction::filterStars:
        return QStringLiteral("filter_stars");
    case ViewerAction::filterColour:
        return QStringLiteral("filter_colour");
    case ViewerAction::filterRejects:
        return QStringLiteral("filter_rejects");
    case ViewerAction::clearFilter:
        return QStringLiteral("clear_filter");
    case ViewerAction::toggleCompare:
        return QStringLiteral("toggle_compare");
    default:
        break;
    }
    return {};
}

std::optional<ViewerAction> viewerActionFromRawValue(const QString& raw)
{
    for (ViewerAction action : allViewerActions()) {
        if (rawValue(action) == raw)
            return action;
    }
    return std::nullopt;
}

QString displayName(ViewerAction action)
{
    if (const auto stars = starsOf(action))
        return *stars == 0 ? QStringLiteral("清除星级") : QStringLiteral("%1 星").arg(*stars);
    switch (action) {
    case ViewerAction::togglePick:
        return QStringLiteral("标为精选 / 取消精选");
    case ViewerAction::toggleReject:
        return QStringLiteral("标为废片 / 取消废片");
    case ViewerAction::toggleLoupe:
        return QStringLiteral("100% 放大查看 / 适合窗口");
    case ViewerAction::toggleInfo:
        return QStringLiteral("显示 / 隐藏拍摄信息");
    case ViewerAction::showHelp:
        return QStringLiteral("快捷键帮助");
    case ViewerAction::filterPicks:
        return QStringLiteral("筛选：仅精选 / 全部");
    case ViewerAction::filterStars:
        return QStringLiteral("筛选：星级下限 1…5 / 不限");
    case ViewerAction::filterColour:
        return QStringLiteral("筛选：颜色 红…紫 / 不限");
    case ViewerAction::filterRejects:
        return QStringLiteral("筛选：隐藏 / 显示废片");
    case ViewerAction::clearFilter:
        return QStringLiteral("清除筛选");
    case ViewerAction::toggleCompare:
        return QStringLiteral("并排比较 2–4 张 / 关闭");
    default:
        break;
    }
    return {};
}

} // namespace lumaro::browse
