// SPDX-License-Identifier: GPL-3.0-or-later
// Analyses every picture of a folder and writes the run's index and summary files into its `_index` folder.
#pragma once

#include "vision/VisionPictureAnalyzer.h"
#include "vision/VisionRecognitionResult.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace lumaro::vision {

struct VisionIndexRunOptions
{
    int jobs = 0; // pictures at a time; 0 = by the picture and processor count
    // Called once per picture as it finishes (result null when it failed), from worker threads but never
    // two at a time.
    std::function<void(const VisionRecognitionResult* result, int done, int total)> onPictureFinished;
    const std::atomic<bool>* cancel = nullptr; // checked before each picture is admitted
};

struct VisionIndexRunResult
{
    QString indexPath;   // empty when no index file was written
    QString summaryPath; // empty when no summary file was written
    int total = 0;
    int failed = 0;
    bool cancelled = false;
    bool indexFolderRefused = false; // `_index` exists but is not a folder, or cannot be made
    QList<VisionRecognitionResult> results; // in the order the pictures finished
    double decodeSeconds = 0, classificationSeconds = 0, facesSeconds = 0, textSeconds = 0;
};

// run() blocks its caller (call it off the main thread in the app); one run at a time per service. A
// picture that fails is logged, counted and left out; the run never stops half-way. A cancelled run writes
// nothing, so the newest index file stays a complete one. "VisionIndexDidUpdate" is posted on the main thread
// after each picture, when there is an application object.
class VisionIndexService
{
public:
    using AnalyzerFactory = std::function<std::unique_ptr<VisionPictureAnalyzer>()>;

    explicit VisionIndexService(AnalyzerFactory makeAnalyzer = &VisionPictureAnalyzer::withInstalledModels,
                                int processorCount = 0);
    ~VisionIndexService();

    static VisionIndexService& shared();

    // `fileNames` are the folder's pictures in browsing order.
    VisionIndexRunResult run(const QString& folder, const QStringList& fileNames,
                             const VisionIndexRunOptions& options = {});

    // Pictures analysed at a time for a run of `pictureCount` pictures on `processorCount` processors.
    static int concurrencyLimit(qsizetype pictureCount, int processorCount);

private:
    std::unique_ptr<VisionPictureAnalyzer> takeAnalyzer();
    void returnAnalyzer(std::unique_ptr<VisionPictureAnalyzer> analyzer);

    AnalyzerFactory m_makeAnalyzer;
    int m_processorCount;
    std::mutex m_idleMutex;
    // Analysers are kept between runs: making one loads the models, the slow part of a small run.
    std::vector<std::unique_ptr<VisionPictureAnalyzer>> m_idle;
};

} // namespace lumaro::vision
