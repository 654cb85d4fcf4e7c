// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/PairingSession.h"

#include "cards/ByteCountFormatter.h"
#include "cards/PairingAnalyzer.h"
#include "cards/PairingCleaner.h"
#include "cards/PairingFolderMemory.h"
#include "cards/RawPicker.h"
#include "platform/Log.h"

#include <QtConcurrent/QtConcurrentRun>

namespace lumaro::cards {

using platform::Log;

PairingSession::PairingSession(platform::SettingsStore& settings, platform::Trash* trash, QObject* parent)
    : QObject(parent)
    , m_settings(settings)
    , m_trash(trash)
{
}

PairingSession::~PairingSession()
{
    m_task.waitForFinished();
}

void PairingSession::loadRememberedFolders()
{
    const auto locations = PairingFolderMemory(m_settings).load();
    m_jpgLastLocation = locations.jpgFolder;
    m_rawLastLocation = locations.rawFolder;
    Q_EMIT changed();
}

void PairingSession::setJpgFolder(const QString& path)
{
    m_jpgFolder = path;
    m_jpgLastLocation = path;
    m_results = {};
    m_generation += 1;
    PairingFolderMemory(m_settings).saveJpgFolder(path);
    Q_EMIT changed();
}

void PairingSession::setRawFolder(const QString& path)
{
    m_rawFolder = path;
    m_rawLastLocation = path;
    m_results = {};
    m_generation += 1;
    Log::raw(QStringLiteral("💾 RAW文件夹路径已更新: ") + path);
    PairingFolderMemory(m_settings).saveRawFolder(path);
    Q_EMIT changed();
}

void PairingSession::setAlert(const QString& message)
{
    m_alertMessage = message;
    Q_EMIT changed();
}

bool PairingSession::analyze()
{
    if (const auto problem = PairingAnalyzer::problemWithFolders(m_jpgFolder, m_rawFolder)) {
        setAlert(*problem);
        return false;
    }
    if (isBusy())
        return false;
    m_analyzing = true;
    m_alertMessage.clear();
    const quint64 generation = m_generation;
    Q_EMIT changed();
    m_task = QtConcurrent::run([this, generation, jpg = m_jpgFolder, raw = m_rawFolder] {
        const AnalysisResults results = PairingAnalyzer::analyze(jpg, raw);
        QMetaObject::invokeMethod(this, [this, generation, results] { finishAnalysis(generation, results); },
                                  Qt::QueuedConnection);
    });
    return true;
}

void PairingSession::finishAnalysis(quint64 generation, const AnalysisResults& results)
{
    m_analyzing = false;
    if (generation == m_generation)
        m_results = results;
    Q_EMIT changed();
}

bool PairingSession::clean()
{
    if (isBusy() || !m_trash || !cleanOffer().canClean())
        return false;
    m_cleaning = true;
    m_progress = 0;
    Q_EMIT changed();
    m_task = QtConcurrent::run([this, files = m_results.unmatchedFiles] {
        const auto report = [this](double done) {
            QMetaObject::invokeMethod(this, [this, done] { m_progress = done; Q_EMIT changed(); }, Qt::QueuedConnection);
        };
        const CleanResult result = PairingCleaner(*m_trash).clean(files, report);
        QMetaObject::invokeMethod(this, [this, result] {
            m_cleaning = false;
            m_progress = 1;
            m_cleanResults.append(result);
            // The folders changed under the analysis: what it listed as orphans is now in the Trash.
            m_results = {};
            analyze();
            m_alertMessage = result.message;
            Q_EMIT changed();
        }, Qt::QueuedConnection);
    });
    return true;
}

bool PairingSession::pick()
{
    if (isBusy() || m_results.matchedFiles.isEmpty())
        return false;
    m_picking = true;
    m_progress = 0;
    Q_EMIT changed();
    m_task = QtConcurrent::run([this, files = m_results.matchedFiles, raw = m_rawFolder] {
        const auto report = [this](double done) {
            QMetaObject::invokeMethod(this, [this, done] { m_progress = done; Q_EMIT changed(); }, Qt::QueuedConnection);
        };
        const PickResult result = RawPicker::pick(files, raw, report);
        QMetaObject::invokeMethod(this, [this, result] {
            m_picking = false;
            m_progress = 1;
            if (!result.pickFolder.isEmpty())
                m_lastPickFolder = result.pickFolder;
            if (!result.errorMessage.isEmpty())
                m_alertMessage = result.errorMessage;
            else
                m_alertMessage = QStringLiteral("已复制 ") + QString::number(result.copiedCount)
                               + QStringLiteral(" 个RAW文件到 ") + result.pickFolder
                               + (result.failedCount > 0 ? QString(QStringLiteral("，") + QString::number(result.failedCount)
                                                                       + QStringLiteral(" 个失败"))
                                                         : QString());
            Q_EMIT changed();
        }, Qt::QueuedConnection);
    });
    return true;
}

} // namespace lumaro::cards
