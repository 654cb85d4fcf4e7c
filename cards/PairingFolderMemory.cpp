// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/PairingFolderMemory.h"

#include "platform/Log.h"
#include "platform/SettingsStore.h"

namespace lumaro::cards {

using platform::Log;

const QString PairingFolderMemory::jpgKey = QStringLiteral("CleanView_JPG_LastLocation");
const QString PairingFolderMemory::rawKey = QStringLiteral("CleanView_RAW_LastLocation");

PairingFolderMemory::PairingFolderMemory(platform::SettingsStore& store)
    : m_store(store)
{
}

PairingFolderMemory::Locations PairingFolderMemory::load() const
{
    Locations locations{m_store.string(jpgKey).value_or(QString()), m_store.string(rawKey).value_or(QString())};
    Log::raw(QStringLiteral("📁 加载位置记忆: JPG=") + locations.jpgFolder + QStringLiteral(", RAW=")
             + locations.rawFolder);
    return locations;
}

void PairingFolderMemory::saveJpgFolder(const QString& path)
{
    m_store.setString(jpgKey, path);
    Log::raw(QStringLiteral("💾 保存位置记忆: JPG=") + path);
}

void PairingFolderMemory::saveRawFolder(const QString& path)
{
    m_store.setString(rawKey, path);
    Log::raw(QStringLiteral("💾 保存位置记忆: RAW=") + path);
}

} // namespace lumaro::cards
