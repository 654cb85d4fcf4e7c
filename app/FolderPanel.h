// SPDX-License-Identifier: GPL-3.0-or-later
// The folder panel: the child folders of the shown folder as cards, next/previous folder, and deep mode.
#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;

namespace lumaro::browse {
class LMRModeState;
}

namespace lumaro::app {

class FolderCardList;

// Main thread. Folder listings run on the thread pool; a listing that comes back for a folder that is no longer
// shown is dropped. Deep mode walks every folder below the folder it was switched on in, depth-first, with the
// next/previous folder actions.
class FolderPanel : public QWidget
{
    Q_OBJECT
public:
    explicit FolderPanel(browse::LMRModeState& state, QWidget* parent = nullptr);

    // The child folders listed now (tests read them).
    QStringList listedFolders() const;
    FolderCardList& cards() { return *m_list; }
    void setDeepMode(bool on);

Q_SIGNALS:
    void openRequested(const QString& folder);
    void moveRequested(int step);

private:
    void folderChanged();
    void deepWalkListed(const QString& base, const QStringList& walk, const QStringList& siblings);
    void refreshDeepLabel();

    browse::LMRModeState& m_state;
    QLabel* m_folder;
    FolderCardList* m_list;
    QCheckBox* m_deep;
    QLabel* m_deepStatus;
};

} // namespace lumaro::app
