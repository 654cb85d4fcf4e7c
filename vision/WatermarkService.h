// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the poster's identifier off the people pictures of a folder (or all of them) and writes the run's
// results to `_index/watermark_index_<stamp>_<key>.json`.
#pragma once

#include "vision/WatermarkReader.h"
#include "vision/WatermarkResult.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>

namespace lumaro::vision {

struct WatermarkRunOptions
{
    bool allPictures = false; // read every picture, not only those the vision index marks as people
    std::function<void(int done, int total)> progress;
    const std::atomic<bool>* cancel = nullptr; // checked before each picture
};

struct WatermarkRunResult
{
    QList<WatermarkResult> results; // the pictures read, in browsing order
    QString indexPath;              // empty when no results file was written
    int total = 0;                  // pictures to read
    int failed = 0;                 // pictures that could not be decoded
    bool noVisionIndex = false;     // people pictures were asked for and the folder has no vision index
    bool noReader = false;          // no text recognition is installed
    bool cancelled = false;
    bool indexFolderRefused = false; // `_index` is not a folder, or cannot be made

    int identified() const;
};

// run() blocks its caller (off the main thread in the app). Logs under "WATERMARK". Without a vision index
// and without allPictures it reads nothing and says how to make one; a cancelled run writes nothing.
class WatermarkService
{
public:
    using ReaderFactory = std::function<std::unique_ptr<WatermarkReader>()>;
    explicit WatermarkService(ReaderFactory makeReader = &withInstalledModels);

    // `fileNames` are the folder's pictures in browsing order.
    WatermarkRunResult run(const QString& folder, const QStringList& fileNames,
                           const WatermarkRunOptions& options = {}) const;

    // A reader over the installed text recognition; nullptr when there is none.
    static std::unique_ptr<WatermarkReader> withInstalledModels();

    static constexpr const char* kTag = "WATERMARK";

private:
    ReaderFactory m_makeReader;
};

} // namespace lumaro::vision
