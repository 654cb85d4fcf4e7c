// SPDX-License-Identifier: GPL-3.0-or-later
// The import dialog of one memory card: what was recognised and found on it, where it goes, and the copy's
// progress.
#pragma once

#include "cards/CardImporter.h"
#include "cards/NewFileInfo.h"

#include <QDialog>

class QCheckBox;
class QLabel;
class QProgressBar;
class QPushButton;

namespace lumaro::cards {
class CardImportService;
}

namespace lumaro::app {

// Main thread only. Scanning and copying run off the main thread in a cards::CardImportService; the dialog
// shows its state. Import is enabled only when the scan found files not imported before and an import
// location is set, and only once: after an import the button stays off (a second click would copy the card
// into another roll). A card imported before offers its new pictures, with "import everything again" as a
// choice. Closing the dialog during an import cancels it (the file being copied is abandoned and leaves
// nothing behind). `storePath`: the remembered cards' database, empty for the app's own.
class CardImportDialog : public QDialog
{
    Q_OBJECT
public:
    CardImportDialog(const QString& mountPath, QWidget* parent = nullptr, const QString& storePath = {});

protected:
    void reject() override;

private:
    void showScan(const cards::ImportData& data);
    void chooseLocation();
    void refresh();
    void showOutcome(const cards::ImportOutcome& outcome);
    const cards::NewFileInfo& chosenFiles() const;

    cards::CardImportService* m_service;
    cards::ImportData m_data;
    bool m_scanned = false;
    bool m_imported = false;
    QString m_location;
    QLabel* m_recognition;
    QLabel* m_files;
    QCheckBox* m_everything;
    QLabel* m_locationLabel;
    QPushButton* m_importButton;
    QProgressBar* m_progress;
    QLabel* m_status;
};

} // namespace lumaro::app
