// SPDX-License-Identifier: GPL-3.0-or-later
// Where card imports go: a setting, by default a "Lumaro" folder in the user's Pictures folder.
#pragma once

#include <QString>

namespace lumaro::platform {
class SettingsStore;
}

namespace lumaro::cards {

// Key "CardImportService_ImportLocation". When it is unset the default is used; when the desktop names no Pictures
// folder either, the location is empty and no import may start. Any thread.
class ImportLocation
{
public:
    explicit ImportLocation(platform::SettingsStore& store);

    QString path() const;
    void setPath(const QString& path);

    static QString defaultPath();
    static const QString key;

private:
    platform::SettingsStore& m_store;
};

} // namespace lumaro::cards
