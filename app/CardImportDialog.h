// SPDX-License-Identifier: GPL-3.0-or-later
// The import dialog of one memory card: what was recognised and found on it, where it goes, and the copy's progress.
#pragma once

#include "cards/NewFileInfo.h"

#include <QDialog>

class QLabel;
class QProgressBar;
class QPushButton;

namespace lumaro::cards {
class CardImportService;
}

namespace lumaro::app {

// Main thread only. Scanning and copying run off the main thread in a cards::CardImportService; the dialog shows its
// state. Import is enabled only when the scan found files and an import location is set. Closing the dialog during an
// import cancels it (the file being copied is abandoned and leaves nothing behind).
class CardImportDialog : public QDialog
{
    Q_OBJECT
public:
    CardImportDialog(const QString& mountPath, QWidget* parent = nullptr);

protected:
    void reject() override;

private:
    void showScan(const cards::ImportData& data);
    void chooseLocation();
    void refresh();

    cards::CardImportService* m_service;
    cards::ImportData m_data;
    bool m_scanned = false;
    QString m_location;
    QLabel* m_recognition;
    QLabel* m_files;
    QLabel* m_locationLabel;
    QPushButton* m_importButton;
    QProgressBar* m_progress;
    QLabel* m_status;
};

} // namespace lumaro::app
