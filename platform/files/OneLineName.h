// SPDX-License-Identifier: GPL-3.0-or-later
// A file or folder name as one line of the window or of a printed sheet shows it.
#pragma once

#include <QString>

namespace lumaro::platform {

class OneLineName
{
public:
    // `name` with each control character written out as lumaro-cli writes it, "\n", "\t" or "\xHH": a
    // newline in a name would otherwise break the line it sits on (a status bar grown to two lines, a caption
    // drawn over its thumbnail), and a tab or an escape would vanish, leaving two different names looking
    // alike. Plain ASCII, because few fonts draw Unicode's control pictures. A backslash stays single: the
    // text is read, not parsed.
    static QString of(const QString& name);
};

} // namespace lumaro::platform
