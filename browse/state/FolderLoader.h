// SPDX-License-Identifier: GPL-3.0-or-later
// Loads a folder's picture list into LMRModeState without blocking the main thread.
#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

namespace lumaro::platform {
class FileTagStore;
}

namespace lumaro::browse {

class FileSystemService;
class LMRModeState;

// Lives on the main thread with the state it fills. The listing runs on the global thread pool; its result
// comes back through the event loop and is dropped when the state's folder has changed meanwhile (the user
// picked another folder while this one was being read) or a newer load was started. Once the list is in,
// every picture's tags are read from disk on the pool too (what Dolphin, setfattr or an earlier session
// wrote) and replace the state's tags and annotations, and so are its stars and pick or reject (its XMP
// sidecar, else its own XMP, as an editor left them); a load of the same folder (F5) reads them again.
class FolderLoader : public QObject
{
    Q_OBJECT
public:
    // `viewName` is the tag of the log lines ("LMRMode1View", "LMRMode2View", …).
    FolderLoader(LMRModeState& state, QString viewName, FileSystemService* service = nullptr,
                 QObject* parent = nullptr, platform::FileTagStore* tags = nullptr);

    // Lists `folder` (which the caller has already made the state's current folder).
    void load(const QString& folder);

Q_SIGNALS:
    void loaded(const QString& folder, int count);
    void dropped(const QString& folder);
    // The tags and ratings of the folder's pictures are in the state.
    void tagsLoaded(const QString& folder);

private:
    void apply(quint64 generation, const QString& folder, const QStringList& names);
    void selectFirstWhenNothingSelected();
    void readTags(quint64 generation, const QString& folder, const QStringList& names);
    bool isCurrent(quint64 generation, const QString& folder) const;

    LMRModeState& m_state;
    QString m_viewName;
    FileSystemService& m_service;
    platform::FileTagStore& m_tags;
    quint64 m_generation = 0;
};

} // namespace lumaro::browse
