// SPDX-License-Identifier: GPL-3.0-or-later
// The observable import of one memory card: scan, then copy into a roll folder, with progress the dialog
// shows.
#pragma once

#include "cards/CardImporter.h"
#include "cards/NewFileInfo.h"

#include <QFuture>
#include <QObject>
#include <QString>

#include <atomic>

namespace lumaro::cards {

// Main thread only. Scan and copy run on a pool thread; isImporting, importProgress and importStatus change
// on the main thread. One import at a time: a start while one runs, or without an import location, is
// refused. cancel() abandons the file being copied (it leaves nothing behind) and skips the rest. The
// destructor cancels and waits.
class CardImportService : public QObject
{
    Q_OBJECT
public:
    // `storePath`: the remembered cards' database; empty for the app's own.
    explicit CardImportService(QObject* parent = nullptr, QString storePath = {});
    ~CardImportService() override;

    // Scans `mountPath` off the main thread and sets apart what was imported from this card before; scanned()
    // delivers the result.
    void scan(const QString& mountPath);
    // Copies data.newFiles, or data.allFiles when `everything` ("import everything again", into a new roll).
    bool startImport(const ImportData& data, const QString& importLocation, bool everything = false);
    void cancel();

    bool isImporting() const { return m_importing; }
    double importProgress() const { return m_progress; }
    QString importStatus() const { return m_status; }
    const ImportOutcome& lastOutcome() const { return m_outcome; }

    // The scan of a card with what was imported from it before set apart (everything is new when the store of
    // remembered cards cannot be opened; that is logged). Blocking; any thread.
    static ImportData scanCard(const QString& mountPath, const QString& storePath = {});

    // "没有发现新文件需要导入" for an empty scan, otherwise "新文件信息：" with the counts and the copy
    // volume.
    static QString describe(const NewFileInfo& files);

Q_SIGNALS:
    void changed();
    void scanned(const cards::ImportData& data);
    void finished(const cards::ImportOutcome& outcome);

private:
    QString m_storePath;
    bool m_importing = false;
    double m_progress = 0;
    QString m_status;
    ImportOutcome m_outcome;
    std::atomic<bool> m_cancelled{false};
    QFuture<void> m_task;
    QFuture<void> m_scan;
};

} // namespace lumaro::cards
