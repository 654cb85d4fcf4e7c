// SPDX-License-Identifier: GPL-3.0-or-later
// Moves the browsing state to the next or previous folder: a sibling folder, or the next one of deep mode's walk.
#pragma once

#include <QObject>
#include <QString>

#include <memory>

namespace lumaro::browse {

class FileSystemService;
class FolderLoader;
class LMRModeState;

// Main thread. In deep mode it walks `recursiveDirectoryList` by `currentDeepIndex`; otherwise it moves among the
// child folders of the shown folder's parent, in listing order. At either end it stays and logs. The new folder's
// pictures are listed through a FolderLoader (the app may hand in its mode's own, so that its log lines carry the
// mode's name).
class FolderNavigator : public QObject
{
    Q_OBJECT
public:
    FolderNavigator(LMRModeState& state, FolderLoader* loader = nullptr, FileSystemService* fileSystem = nullptr,
                    QObject* parent = nullptr);
    ~FolderNavigator() override;

    // +1 next, −1 previous. Returns the folder moved to, or an empty string when it stayed.
    QString move(int step);

Q_SIGNALS:
    void folderChanged(const QString& folder);

private:
    QString targetInDeepMode(int step);
    QString targetAmongSiblings(const QString& current, int step);
    void open(const QString& folder);

    LMRModeState& m_state;
    FolderLoader* m_loader;
    std::unique_ptr<FolderLoader> m_ownLoader;
    FileSystemService& m_fileSystem;
};

} // namespace lumaro::browse
