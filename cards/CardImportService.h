// SPDX-License-Identifier: GPL-3.0-or-later
// The observable import of one memory card: scan, then copy into a roll folder, with progress the dialog shows.
#pragma once

#include "cards/CardImporter.h"
#include "cards/NewFileInfo.h"

#include <QFuture>
#include <QObject>
#include <QString>

#include <atomic>

namespace lumaro::cards {

// Main thread only. Scan and copy run on a pool thread; isImporting, importProgress and importStatus change on the
// main thread. One import at a time: a start while one runs, or without an import location, is refused. cancel()
// abandons the file being copied (it leaves nothing behind) and skips the rest. The destructor cancels and waits.
class CardImportService : public QObject
{
    Q_OBJECT
public:
    explicit CardImportService(QObject* parent = nullptr);
    ~CardImportService() override;

    // Scans `mountPath` off the main thread; scanned() delivers the result.
    void scan(const QString& mountPath);
    bool startImport(const ImportData& data, const QString& importLocation);
    void cancel();

    bool isImporting() const { return m_importing; }
    double importProgress() const { return m_progress; }
    QString importStatus() const { return m_status; }
    const ImportOutcome& lastOutcome() const { return m_outcome; }

    // "没有发现新文件需要导入" for an empty scan, otherwise "新文件信息：" with the counts and the copy volume.
    static QString describe(const NewFileInfo& files);

Q_SIGNALS:
    void changed();
    void scanned(const cards::ImportData& data);
    void finished(const cards::ImportOutcome& outcome);

private:
    bool m_importing = false;
    double m_progress = 0;
    QString m_status;
    ImportOutcome m_outcome;
    std::atomic<bool> m_cancelled{false};
    QFuture<void> m_task;
    QFuture<void> m_scan;
};

} // namespace lumaro::cards
