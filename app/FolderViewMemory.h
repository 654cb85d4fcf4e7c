// SPDX-License-Identifier: GPL-3.0-or-later
// How each folder was last looked at: the window's size and place, the browsing mode and the selected picture.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace lumaro::platform {
class SettingsStore;
}

namespace lumaro::app {

// Main thread. Kept in the user's settings under "MainWindow_FolderViews", one JSON object keyed by folder path,
// the most recently seen `maxFolders` folders. The picture is remembered by name, not by index: files come and
// go between two visits, and an index would then point at another picture.
class FolderViewMemory
{
public:
    static constexpr int maxFolders = 300;
    static inline const QString settingsKey = QStringLiteral("MainWindow_FolderViews");

    struct View
    {
        QByteArray geometry; // QWidget::saveGeometry()
        int mode = 0;
        QString selectedFile;
    };

    explicit FolderViewMemory(platform::SettingsStore& store);

    void remember(const QString& folder, const View& view);
    std::optional<View> recall(const QString& folder) const;

private:
    platform::SettingsStore& m_store;
};

} // namespace lumaro::app
