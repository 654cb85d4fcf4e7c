// SPDX-License-Identifier: GPL-3.0-or-later
// The seventeen keyboard actions of culling, with the names, symbols and colours the settings show.
#pragma once

#include <QColor>
#include <QList>
#include <QString>

#include <optional>

namespace lumaro::browse {

// The raw value ("navigate_previous", …) is also the stored form of an action in the key bindings.
enum class HotkeyAction {
    navigatePrevious,
    navigateNext,
    navigateUp,
    navigateDown,
    navigateFolderNext,
    navigateFolderPrevious,
    annotateRed,
    annotateYellow,
    annotateOrange,
    annotateGreen,
    annotateBlue,
    annotatePurple,
    deleteFile,
    restoreFile,
    rotateLeft,
    toggleFullScreen,
    toggleDirPanel,
};

// Every action in declaration order (the order of the settings page).
const QList<HotkeyAction>& allHotkeyActions();

QString rawValue(HotkeyAction action);
std::optional<HotkeyAction> hotkeyActionFromRawValue(const QString& raw);
QString displayName(HotkeyAction action);
// The symbol name of the action's icon ("arrow.left", "trash", …); the app maps it to an icon of its theme.
QString symbolName(HotkeyAction action);
QString actionDescription(HotkeyAction action);
// "red", "yellow", "orange", "green", "blue", "purple" for the six annotate actions, none for the rest.
std::optional<QString> colorName(HotkeyAction action);
// The colour an annotate action's circle is drawn in; invalid for the other actions.
QColor symbolColor(HotkeyAction action);
// The annotate action of a colour name, if it is one of the six.
std::optional<HotkeyAction> annotateActionForColor(const QString& color);
// Whether a held key's repeats carry the action out again: only moving through the pictures does. Deleting,
// restoring, turning, tagging and toggling happen once per press, however long the key is held.
bool repeatsWhileHeld(HotkeyAction action);

} // namespace lumaro::browse
