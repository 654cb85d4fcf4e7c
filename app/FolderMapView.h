// SPDX-License-Identifier: GPL-3.0-or-later
// The waterfall's folder map: the tree of the folder shown, with picture counts and the current folder
// marked.
#pragma once

#include "browse/folders/FolderTree.h"

#include <QTreeWidget>

namespace lumaro::browse {
class LMRModeState;
}

namespace lumaro::app {

// Main thread; the tree is walked on the pool and a walk that comes back for another root is dropped. The
// root is the deep-mode walk's base while deep mode is on; otherwise the folder shown, kept while the user
// moves inside its tree (so the map stays put when a folder of it is opened). The current folder is selected
// and bold. A click on a folder asks to open it: in deep mode as a move along the walk (so the walk goes on
// from there), otherwise as a plain open.
class FolderMapView : public QTreeWidget
{
    Q_OBJECT
public:
    explicit FolderMapView(browse::LMRModeState& state, QWidget* parent = nullptr);

    QString root() const { return m_root; }
    // The folders shown, in walk order (tests read them).
    QStringList folders() const;
    QString markedFolder() const;
    void openItem(QTreeWidgetItem* item);

Q_SIGNALS:
    void openRequested(const QString& folder);
    void moveRequested(int step);
    void mapShown(const QString& root);

protected:
    void showEvent(QShowEvent* event) override;

private:
    void follow();
    void walked(const QString& root, const QList<browse::FolderTreeEntry>& entries, bool truncated);
    void mark();

    browse::LMRModeState& m_state;
    QString m_root;
    QString m_walking;
    QHash<QString, QTreeWidgetItem*> m_items;
};

} // namespace lumaro::app
