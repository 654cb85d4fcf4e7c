// SPDX-License-Identifier: GPL-3.0-or-later
// The "Repertoire" panel: bundles of picks from many shoots, shown as a waterfall, added to with B, exported.
#pragma once

#include <QWidget>

#include <memory>

class QComboBox;
class QLabel;

namespace lumaro::library {
class FavourManager;
class RepertoireStore;
} // namespace lumaro::library

namespace lumaro::app {

class PictureListWaterfall;
class ToolHost;

// Main thread; exports run on the pool. The bundle chosen is remembered ("RepertoirePanel_CurrentBundle").
// The key B (an action of the window, so it works while the panel is hidden) and 加入当前图片 add the
// selected picture of the window to it, making a bundle named "Repertoire" when there is none. A picture the
// bundle cannot find is shown as unreadable and counted; it is exported by neither route and named in the
// message.
class RepertoirePanel : public QWidget
{
    Q_OBJECT
public:
    RepertoirePanel(ToolHost& host, library::RepertoireStore& store, library::FavourManager& favourites,
                    QWidget* parent = nullptr);
    ~RepertoirePanel() override;

    QString currentBundle() const;
    void setCurrentBundle(const QString& name);
    // Adds the window's selected picture to the current bundle; the message says what happened.
    void addSelection();
    void removeSelected();
    // Each: nullopt when done, else why not (the store's words).
    std::optional<QString> createBundle(const QString& name);
    std::optional<QString> renameBundle(const QString& newName);
    // Forgets the current bundle's list; its pictures stay where they are.
    std::optional<QString> dropBundle();
    // Exports the current bundle off the main thread; exported() reports the outcome in words.
    void exportTo(const QString& folder, bool asZip);
    QString message() const;
    PictureListWaterfall& pictures() { return *m_pictures; }
    void reload();

Q_SIGNALS:
    void exported(const QString& message);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void fillBundles();
    void askNewBundle();
    void askRename();
    void askDrop();
    void askExport(bool asZip);
    void say(const QString& text);

    ToolHost& m_host;
    library::RepertoireStore& m_store;
    QComboBox* m_bundles;
    QLabel* m_summary;
    PictureListWaterfall* m_pictures;
    QLabel* m_message;
    bool m_filling = false;
};

} // namespace lumaro::app
