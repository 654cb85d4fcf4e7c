// SPDX-License-Identifier: GPL-3.0-or-later
// The favourites copy option: marking a favourite also puts a copy of the picture into one chosen folder.
#pragma once

#include <QString>

#include <optional>

namespace lumaro::platform {
class SettingsStore;
}

namespace lumaro::library {

// The copy is the original file, byte for byte, with its colour tags and modification time (no re-encoding:
// a RAW stays a RAW). It never replaces a file: a different picture of the same name gets the next free
// "stem_1.ext" name, while the same picture marked again (same name, size and time, under its name or such a
// suffixed one) is not copied twice. Each mark makes a copy that is missing, so a mark cut short is completed by
// the next.
// Blocking and thread-safe; the settings are read on each call, so a change in the settings page applies at once.
class FavourCopier
{
public:
    static const QString enabledKey;        // "LMR_FlowFavCopyEnabled"
    static const QString targetPositionKey; // "LMR_FlowFavCopyTargetPosition"

    explicit FavourCopier(const platform::SettingsStore& settings);

    bool isEnabled() const;
    // The folder named by the setting, else a "Favourites" folder under the card import location
    // ("CardImportService_ImportLocation", by default the user's Pictures/Lumaro).
    QString targetFolder() const;
    // The path of the copy (made now or found there already), or nullopt with the cause logged.
    std::optional<QString> copy(const QString& picturePath) const;

private:
    const platform::SettingsStore& m_settings;
};

} // namespace lumaro::library
