// SPDX-License-Identifier: GPL-3.0-or-later
// What a view of pictures from many folders (favourites, bundles) asks of the window: show one in its folder.
#pragma once

#include <QString>

namespace lumaro::app {

// Main thread. The window opens the picture's folder and selects the picture once the folder is listed.
class PictureOpener
{
public:
    virtual ~PictureOpener() = default;
    virtual void openPicture(const QString& path) = 0;
};

} // namespace lumaro::app
