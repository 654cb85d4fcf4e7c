// SPDX-License-Identifier: GPL-3.0-or-later
// Saves the shared part of the browsing state under the "LMR_" keys when the user switches modes,
// and reads it back into the next mode.
#pragma once

namespace lumaro::platform {
class SettingsStore;
}

namespace lumaro::browse {

class LMRModeState;

namespace settingsKeys {
inline constexpr auto originalFolderPath = "LMR_OriginalFolderPath";
inline constexpr auto authorizedDirectory = "LMR_AuthorizedDirectory";
inline constexpr auto pathRefOfImage = "LMR_PathRefOfImage";
inline constexpr auto folderBookmarkData = "LMR_FolderBookmarkData";
inline constexpr auto selectedImageIndex = "LMR_SelectedImageIndex";
inline constexpr auto professionalModeStyle = "LMR_ProfessionalModeStyle";
inline constexpr auto imagesPerRow = "LMR_ImagesPerRow";
inline constexpr auto imageAnnotations = "LMR_ImageAnnotations";
// The folder whose pictures LMR_ImageAnnotations names: the map is read back only into that folder.
inline constexpr auto imageAnnotationsFolder = "LMR_ImageAnnotationsFolder";
inline constexpr auto hasRequestedPermissions = "LMR_HasRequestedPermissions";
} // namespace settingsKeys

// Main thread only (it reads and writes LMRModeState).
class ModeStatePersistence
{
public:
    // Writes the keys, logging "ContentView - 模式切换，共享状态已保存到UserDefaults".
    static void save(const LMRModeState& state, platform::SettingsStore& store);
    // Reads back what is stored; a key that is absent or unusable leaves its field as it is. The selection is
    // read back only as far as the list in `state` allows.
    static void load(LMRModeState& state, const platform::SettingsStore& store);
};

} // namespace lumaro::browse
