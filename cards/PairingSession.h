// SPDX-License-Identifier: GPL-3.0-or-later
// The observable state of one pairing panel (the clean or the RAW pick): folders, analysis, progress, history.
#pragma once

#include "cards/AnalysisResults.h"
#include "cards/CleanOffer.h"
#include "cards/CleanResult.h"

#include <QFuture>
#include <QList>
#include <QObject>
#include <QString>

namespace lumaro::platform {
class SettingsStore;
class Trash;
} // namespace lumaro::platform

namespace lumaro::cards {

// Main thread only. Analysis, clean and pick run on a pool thread; their results and progress come back to the
// main thread, and a result of an analysis whose folders have changed since is dropped. One task at a time: a
// request while one runs is refused. The destructor waits for a running task.
class PairingSession : public QObject
{
    Q_OBJECT
public:
    // `trash` may be null for the pick panel, which never trashes anything.
    PairingSession(platform::SettingsStore& settings, platform::Trash* trash, QObject* parent = nullptr);
    ~PairingSession() override;

    // Reads the remembered folders ("CleanView_JPG_LastLocation", "CleanView_RAW_LastLocation").
    void loadRememberedFolders();
    void setJpgFolder(const QString& path);
    void setRawFolder(const QString& path);

    // false (with alertMessage set) when a folder is missing or a task runs.
    bool analyze();
    bool clean();
    bool pick();

    QString jpgFolderPath() const { return m_jpgFolder; }
    QString rawFolderPath() const { return m_rawFolder; }
    QString jpgFolderLastLocation() const { return m_jpgLastLocation; }
    QString rawFolderLastLocation() const { return m_rawLastLocation; }
    bool isAnalyzing() const { return m_analyzing; }
    bool isCleaning() const { return m_cleaning; }
    bool isPicking() const { return m_picking; }
    bool isBusy() const { return m_analyzing || m_cleaning || m_picking; }
    double progress() const { return m_progress; }
    const AnalysisResults& analysisResults() const { return m_results; }
    CleanOffer cleanOffer() const { return CleanOffer::decide(m_results); }
    const QList<CleanResult>& cleanResults() const { return m_cleanResults; }
    QString alertMessage() const { return m_alertMessage; }
    QString lastPickFolderPath() const { return m_lastPickFolder; }

Q_SIGNALS:
    void changed();

private:
    void setAlert(const QString& message);
    void finishAnalysis(quint64 generation, const AnalysisResults& results);

    platform::SettingsStore& m_settings;
    platform::Trash* m_trash;
    QString m_jpgFolder;
    QString m_rawFolder;
    QString m_jpgLastLocation;
    QString m_rawLastLocation;
    bool m_analyzing = false;
    bool m_cleaning = false;
    bool m_picking = false;
    double m_progress = 0;
    AnalysisResults m_results;
    QList<CleanResult> m_cleanResults;
    QString m_alertMessage;
    QString m_lastPickFolder;
    quint64 m_generation = 0;
    QFuture<void> m_task;
};

} // namespace lumaro::cards
