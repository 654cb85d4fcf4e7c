// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/state/ModeStatePersistence.h"

#include "browse/state/LMRModeState.h"
#include "platform/Log.h"
#include "platform/SettingsStore.h"

#include <QDir>

namespace lumaro::browse {

using platform::SettingsStore;
namespace keys = settingsKeys;

namespace {

void storeOrRemove(SettingsStore& store, const QString& key, const std::optional<QString>& value)
{
    if (value)
        store.setString(key, *value);
    else
        store.remove(key);
}

// The style is stored 1-based: style1 as 1, style2 as 2.
qint64 storedStyle(ProfessionalModeStyle style)
{
    return style == ProfessionalModeStyle::style1 ? 1 : 2;
}

std::optional<ProfessionalModeStyle> styleFromStored(qint64 stored)
{
    switch (stored - 1) {
    case 0:
        return ProfessionalModeStyle::style1;
    case 1:
        return ProfessionalModeStyle::style2;
    default:
        return std::nullopt;
    }
}

} // namespace

void ModeStatePersistence::save(const LMRModeState& state, SettingsStore& store)
{
    if (state.originalFolderPath()) {
        store.setString(keys::originalFolderPath, *state.originalFolderPath());
        storeOrRemove(store, keys::authorizedDirectory, state.authorizedDirectory());
        storeOrRemove(store, keys::pathRefOfImage, state.pathRefOfImage());
    }
    if (state.folderBookmarkData())
        store.setBytes(keys::folderBookmarkData, *state.folderBookmarkData());
    if (state.selectedImageIndex())
        store.setInteger(keys::selectedImageIndex, *state.selectedImageIndex());
    store.setInteger(keys::professionalModeStyle, storedStyle(state.professionalModeStyle()));
    store.setInteger(keys::imagesPerRow, state.imagesPerRow());
    store.setBytes(keys::imageAnnotations, encodeAnnotations(state.imageAnnotations()));
    storeOrRemove(store, keys::imageAnnotationsFolder, state.currentFolder());
    if (state.hasRequestedPermissions)
        store.setBoolean(keys::hasRequestedPermissions, true);
    platform::Log::line(QStringLiteral("ContentView"), QStringLiteral("模式切换，共享状态已保存到UserDefaults"));
}

void ModeStatePersistence::load(LMRModeState& state, const SettingsStore& store)
{
    if (const auto original = store.string(keys::originalFolderPath)) {
        const auto authorized = store.string(keys::authorizedDirectory);
        const auto pathRef = store.string(keys::pathRefOfImage);
        if (authorized != state.authorizedDirectory() || pathRef != state.pathRefOfImage()
            || original != state.originalFolderPath())
            state.setFolderPath(authorized, pathRef, original);
    }
    if (const auto bookmark = store.bytes(keys::folderBookmarkData))
        state.setFolderBookmarkData(*bookmark);
    if (const auto style = store.integer(keys::professionalModeStyle)) {
        if (const auto decoded = styleFromStored(*style))
            state.setProfessionalModeStyle(*decoded);
    }
    if (const auto columns = store.integer(keys::imagesPerRow); columns && *columns > 0)
        state.setImagesPerRow(int(*columns));
    // Annotations are keyed by file name, and every card reuses the same names: only the folder they were
    // saved from gets them back.
    const auto annotations = store.bytes(keys::imageAnnotations);
    const auto annotationsFolder = store.string(keys::imageAnnotationsFolder);
    const auto shown = state.currentFolder();
    if (annotations && annotationsFolder && shown &&
        QDir::cleanPath(*annotationsFolder) == QDir::cleanPath(*shown))
        state.setImageAnnotations(decodeAnnotations(*annotations));
    if (const auto index = store.integer(keys::selectedImageIndex))
        state.select(int(*index));
    if (store.boolean(keys::hasRequestedPermissions).value_or(false))
        state.hasRequestedPermissions = true;
}

} // namespace lumaro::browse
