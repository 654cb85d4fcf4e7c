// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/ImportLocation.h"

#include "platform/SettingsStore.h"

#include <QDir>
#include <QStandardPaths>

namespace lumaro::cards {

const QString ImportLocation::key = QStringLiteral("CardImportService_ImportLocation");

ImportLocation::ImportLocation(platform::SettingsStore& store)
    : m_store(store)
{
}

QString ImportLocation::defaultPath()
{
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    if (pictures.isEmpty())
        return {};
    return QDir(pictures).filePath(QStringLiteral("Lumaro"));
}

QString ImportLocation::path() const
{
    const QString stored = m_store.string(key).value_or(QString());
    return stored.isEmpty() ? defaultPath() : stored;
}

void ImportLocation::setPath(const QString& path)
{
    m_store.setString(key, path);
}

} // namespace lumaro::cards
