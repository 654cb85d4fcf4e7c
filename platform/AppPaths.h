// SPDX-License-Identifier: GPL-3.0-or-later
// Where Lumaro keeps its own files: settings, data (fav.db, models) and cache, all under the XDG homes.
#pragma once

#include <QString>
#include <QStringList>

namespace lumaro::platform {

// Every folder is resolved on each call through QStandardPaths, so a test that points XDG_*_HOME at a
// temporary folder is honoured. The folders are not created here; writers create what they need.
class AppPaths
{
public:
    static QString configDir(); // ~/.config/lumaro
    static QString dataDir();   // ~/.local/share/lumaro
    static QString cacheDir();  // ~/.cache/lumaro
    // The user's data home (~/.local/share), where the freedesktop Trash lives.
    static QString dataHome();
    // The folders searched for models, in order: $LUMARO_MODELS_DIR, ~/.local/share/lumaro/models,
    // <prefix>/share/lumaro/models.
    static QStringList modelSearchDirs();
};

} // namespace lumaro::platform
