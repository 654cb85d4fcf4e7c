// SPDX-License-Identifier: GPL-3.0-or-later
// symbolColor() of HotkeyAction.h, apart from the rest: it is the only part that calls Qt Gui, and
// lumaro-cli, which uses the colour names for `tags`, must not load Qt Gui for it.
#include "browse/hotkeys/HotkeyAction.h"

namespace lumaro::browse {

QColor symbolColor(HotkeyAction action)
{
    const auto name = colorName(action);
    if (!name)
        return {};
    // Qt's named "orange" and "purple" are the SVG colours; the six read well on both light and dark themes.
    return QColor::fromString(*name);
}

} // namespace lumaro::browse
