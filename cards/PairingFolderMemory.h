// SPDX-License-Identifier: GPL-3.0-or-later
// The last JPG and RAW folders chosen on the pairing panels, remembered across restarts in the settings store.
#pragma once

#include <QString>

namespace lumaro::platform {
class SettingsStore;
}

namespace lumaro::cards {

// Keys "CleanView_JPG_LastLocation" and "CleanView_RAW_LastLocation" (string paths), shared by both panels.
// A missing key reads as an empty path. Any thread (the store is thread-safe).
class PairingFolderMemory
{
public:
    struct Locations
    {
        QString jpgFolder;
        QString rawFolder;
    };

    explicit PairingFolderMemory(platform::SettingsStore& store);

    Locations load() const;
    void saveJpgFolder(const QString& path);
    void saveRawFolder(const QString& path);

    static const QString jpgKey;
    static const QString rawKey;

private:
    platform::SettingsStore& m_store;
};

} // namespace lumaro::cards
