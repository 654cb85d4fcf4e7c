// SPDX-License-Identifier: GPL-3.0-or-later
// The keys beyond the seventeen culling actions: stars, pick and reject, the 100 % loupe, shooting data,
// help, the filter and the side-by-side comparison.
#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace lumaro::browse {

enum class ViewerAction
{
    rate0,
    rate1,
    rate2,
    rate3,
    rate4,
    rate5,
    togglePick,
    toggleReject,
    toggleLoupe,
    toggleInfo,
    showHelp,
    filterPicks,   // only picks, or all again
    filterStars,   // the star floor: ≥1 … ≥5, then none
    filterColour,  // one colour: red … purple, then none
    filterRejects, // hide the rejects, or show them again
    clearFilter,
    toggleCompare, // two to four pictures side by side
};

const QList<ViewerAction>& allViewerActions();
// "rate_0" … "show_help": the stored form.
QString rawValue(ViewerAction action);
std::optional<ViewerAction> viewerActionFromRawValue(const QString& raw);
// The name shown in the settings and the help ("3 星", "标为精选", …).
QString displayName(ViewerAction action);
// The stars a rate action gives, or nullopt for the others.
std::optional<int> starsOf(ViewerAction action);

} // namespace lumaro::browse
