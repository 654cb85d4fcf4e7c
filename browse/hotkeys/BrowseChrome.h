// SPDX-License-Identifier: GPL-3.0-or-later
// What the key dispatcher asks of the window around the browsing view; the app implements it.
#pragma once

#include <QString>

namespace lumaro::browse {

// Called on the main thread only.
class BrowseChrome
{
public:
    virtual ~BrowseChrome() = default;
    virtual void toggleFullScreen() = 0;
    virtual void toggleFolderPanel() = 0;
    // A message the user must see and dismiss (a delete that failed).
    virtual void showAlert(const QString& title, const QString& message) = 0;
    // A short note that goes away by itself (nothing left to restore, the last folder, a tag not written).
    virtual void showMessage(const QString& message) { Q_UNUSED(message); }
};

} // namespace lumaro::browse
