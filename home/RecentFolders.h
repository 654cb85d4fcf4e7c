// SPDX-License-Identifier: GPL-3.0-or-later
// The folders opened last, newest first, for the home page.
#pragma once

#include <QString>
#include <QStringList>

namespace lumaro::platform {
class SettingsStore;
}

namespace lumaro::home {

// Key "HomePage_RecentFolders", a JSON list of paths, newest first, at most `maxFolders`. Opening a folder
// again moves it to the front. A folder gone from disk stays listed (its card says it cannot be read) until
// pushed out. A stored entry that is no absolute path, or names a folder already listed, is left out. Any
// thread, as the store is.
class RecentFolders
{
public:
    static constexpr int maxFolders = 12;
    static const QString settingsKey;

    explicit RecentFolders(platform::SettingsStore& store);

    QStringList folders() const;
    void remember(const QString& folder);

private:
    platform::SettingsStore& m_store;
};

} // namespace lumaro::home
