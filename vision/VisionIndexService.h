// SPDX-License-Identifier: GPL-3.0-or-later
// Analyses every picture of a folder and writes the run's index and summary files into its `_index` folder.
#pragma once

#include "vision/VisionPictureAnalyzer.h"
#include "vision/VisionRecognitionResult.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
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

// A picture left out of the run, and why.
struct VisionIndexFailure
{
    QString fileName;
    QString reason;
};

struct VisionIndexRunResult
{
    QString indexPath;   // empty when no index file was written
    QString summaryPath; // empty when no summary file was written
    int total = 0;
    int failed = 0;
    bool cancelled = false;
    bool indexFolderRefused = false;        // `_index` exists but is not a folder, or cannot be made
    QList<VisionRecognitionResult> results; // in the order the pictures finished
    QList<VisionIndexFailure> failures;     // in the order the pictures failed; as many as `failed`
    // CPU-side seconds per stage, summed over all workers.
    double decodeSeconds = 0, classificationSeconds = 0, objectsSeconds = 0, peopleSeconds = 0,
           facesSeconds = 0, drawingSeconds = 0, textSeconds = 0;
};

// run() blocks its caller (call it off the main thread in the app); one run at a time per service. A
// picture that fails is logged, counted and left out; the run never stops half-way. A cancelled run writes
// nothing at all (no `_index` folder, no `.hidden` entry), so the newest index file stays a complete one.
// The admitted pictures share the run's one analyser (one copy of every model: a copy per worker cost about
// 100 MB each at 24 MP), which lives only as long as the run. "VisionIndexDidUpdate" is posted on the main
// thread after each picture, when there is an application object.
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

    // The user info of "VisionIndexDidUpdate" for one finished picture ("folderPath", "filePath" and, when it
    // was analysed, its mark and labels), so a view refreshes that picture before the run's file is written.
    static QVariantMap didUpdateInfo(const QString& folder, const QString& filePath,
                                     const VisionRecognitionResult* result);
    // The picture's result carried by such an info; nullopt when the picture failed.
    static std::optional<VisionRecognitionResult> resultFromUpdate(const QVariantMap& info);

private:
    AnalyzerFactory m_makeAnalyzer;
    int m_processorCount;
};

} // namespace lumaro::vision
