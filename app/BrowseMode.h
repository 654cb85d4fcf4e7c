// SPDX-License-Identifier: GPL-3.0-or-later
// One browsing mode of the window: a view over the shared LMRModeState with its own name in the log.
#pragma once

#include <QString>
#include <QWidget>

namespace lumaro::browse {
class FolderLoader;
class LMRModeState;
class ThumbnailLoader;
} // namespace lumaro::browse

namespace lumaro::platform {
class SettingsStore;
}

namespace lumaro::app {

class IndicatorOverlay;
class ThumbnailScrollView;

// Main thread. The mode keeps no state of its own beyond layout: folder, list and selection are the shared
// state's. adopt() reads back what the previous mode saved under the "LMR_" keys.
class BrowseMode : public QWidget
{
    Q_OBJECT
public:
    BrowseMode(QString viewName, QString title, browse::LMRModeState& state, QWidget* parent = nullptr);
    ~BrowseMode() override;

    const QString& viewName() const { return m_viewName; }
    const QString& title() const { return m_title; }
    // Lists folders for this mode, logging with its name ("LMRMode1View - 开始加载文件夹: …").
    browse::FolderLoader& folderLoader() { return *m_folderLoader; }
    // The thumbnails this mode shows.
    virtual ThumbnailScrollView& thumbnails() = 0;
    IndicatorOverlay& overlay() { return *m_overlay; }

    void adopt(const platform::SettingsStore& store);

protected:
    // Called by subclasses once their children exist, so the signs lie over them.
    void addOverlay();
    browse::LMRModeState& state() { return m_state; }

private:
    QString m_viewName;
    QString m_title;
    browse::LMRModeState& m_state;
    browse::FolderLoader* m_folderLoader;
    IndicatorOverlay* m_overlay = nullptr;
};

} // namespace lumaro::app
