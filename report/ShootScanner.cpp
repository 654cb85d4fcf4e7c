// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ShootScanner.h"

#include "platform/DirectoryLister.h"
#include "platform/FileTagStore.h"
#include "platform/metadata/XmpSidecar.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QThreadPool>

#include <condition_variable>
#include <mutex>

namespace lumaro::report {

namespace {

struct Listing
{
    QStringList pictures;
    QHash<QString, QString> sidecars; // lower-cased full path without ".xmp" → the sidecar's path
    QStringList failures;
};

void listFolder(const QString& folder, bool deep, QSet<QString>& visited, Listing& listing, bool top,
                QString* topError)
{
    const QString canonical = QFileInfo(folder).canonicalFilePath();
    if (visited.contains(canonical))
        return;
    visited.insert(canonical);
    QString error;
    const auto entries = platform::DirectoryLister::listVisible(folder, &error);
    if (!entries) {
        if (top)
            *topError = error;
        else
            listing.failures << folder + QStringLiteral(": ") + error;
        return;
    }
    QStringList children;
    const QDir dir(folder);
    for (const platform::DirectoryEntry& entry : *entries) {
        const QString name = entry.name();
        if (entry.kind == platform::DirectoryEntry::Kind::directory) {
            if (deep && name != QLatin1String("_index"))
                children << dir.filePath(name);
            continue;
        }
        if (entry.kind != platform::DirectoryEntry::Kind::file)
            continue;
        if (platform::XmpSidecar::isSidecarName(name))
            listing.sidecars.insert(dir.filePath(name).chopped(4).toLower(), dir.filePath(name));
        else if (fileKindOf(name))
            listing.pictures << dir.filePath(name);
    }
    for (const QString& child : children)
        listFolder(child, deep, visited, listing, false, topError);
}

QString sidecarOf(const Listing& listing, const QString& path)
{
    // Both spellings are in use: IMG_1.CR2.xmp (darktable) and IMG_1.xmp (Lightroom, Capture One).
    const QString lower = path.toLower();
    if (const auto it = listing.sidecars.constFind(lower); it != listing.sidecars.constEnd())
        return *it;
    const qsizetype dot = lower.lastIndexOf(QLatin1Char('.'));
    const auto it = listing.sidecars.constFind(lower.left(dot));
    return it != listing.sidecars.constEnd() ? *it : QString();
}

// Work shared by the calling thread and the pool tasks; held by shared pointer so that a task the pool starts
// late, after the caller has gone, touches nothing freed.
struct SharedRun
{
    std::atomic<qsizetype> next{0};
    std::atomic<qsizetype> done{0};
    std::mutex mutex;
    std::condition_variable settled;
    int inFlight = 0;    // files taken and not yet finished
    bool closed = false; // the caller has left: the cancel flag and the work's captures may be gone
};

// Takes files one by one until none is left or the run is cancelled.
template <typename Work>
void drain(SharedRun& run, qsizetype count, const std::atomic_bool* cancel, const Work& work,
           const std::function<void()>& afterEach)
{
    for (;;) {
        {
            std::lock_guard lock(run.mutex);
            if (run.closed)
                return;
            ++run.inFlight;
        }
        const qsizetype i = run.next++;
        const bool take = i < count && !(cancel && cancel->load());
        if (take) {
            work(i);
            ++run.done;
        }
        {
            std::lock_guard lock(run.mutex);
            --run.inFlight;
        }
        run.settled.notify_all();
        if (!take)
            return;
        if (afterEach)
            afterEach();
    }
}

} // namespace

ShootScanner::ShootScanner(const platform::FileTagStore& tags) : m_tags(tags) {}

std::optional<ScanResult> ShootScanner::scan(const QString& folder, bool deep, const std::atomic_bool* cancel,
                                             const Progress& progress, QString* error) const
{
    Listing listing;
    QSet<QString> visited;
    QString topError;
    listFolder(folder, deep, visited, listing, true, &topError);
    if (!topError.isEmpty()) {
        if (error)
            *error = topError;
        return std::nullopt;
    }

    const qsizetype count = listing.pictures.size();
    auto run = std::make_shared<SharedRun>();
    auto files = std::make_shared<std::vector<std::optional<ShotFile>>>(std::size_t(count));
    auto reasons = std::make_shared<std::vector<QString>>(std::size_t(count));
    auto shared = std::make_shared<Listing>(std::move(listing));
    const platform::FileTagStore* tags = &m_tags;
    const auto work = [files, reasons, shared, tags](qsizetype i) {
        const QString& path = shared->pictures.at(i);
        platform::CaptureMetadata metadata = platform::CaptureMetadata::read(path);
        if (metadata.status == platform::CaptureMetadata::Status::cannotOpen) {
            (*reasons)[std::size_t(i)] = path + QStringLiteral(": ") + metadata.error;
            return;
        }
        ShotFile file;
        file.path = path;
        file.folder = QFileInfo(path).path();
        file.kind = *fileKindOf(QFileInfo(path).fileName());
        file.metadata = std::move(metadata);
        file.tags = tags->tags(path).value_or(QStringList());
        if (const QString sidecar = sidecarOf(*shared, path); !sidecar.isEmpty())
            file.sidecarRating = platform::CaptureMetadata::read(sidecar).rating;
        (*files)[std::size_t(i)] = std::move(file);
    };

    // The pool's threads help while this thread works too; a helper that starts after the last file finds
    // nothing left to do.
    const int helpers = std::max(0, QThreadPool::globalInstance()->maxThreadCount() - 1);
    for (int h = 0; h < helpers && count > 1; ++h) {
        QThreadPool::globalInstance()->start(
            [run, count, cancel, work] { drain(*run, count, cancel, work, {}); });
    }
    drain(*run, count, cancel, work, [&] {
        if (progress)
            progress(run->done.load(), count);
    });
    {
        // Wait only for helpers that have a file in hand; one the pool has not started yet will take none.
        std::unique_lock lock(run->mutex);
        run->settled.wait(lock, [&] { return run->inFlight == 0; });
        run->closed = true;
    }
    if (progress)
        progress(run->done.load(), count);

    ScanResult result;
    result.failures = shared->failures;
    if (cancel && cancel->load()) {
        result.cancelled = true;
        return result;
    }
    for (qsizetype i = 0; i < count; ++i) {
        if ((*files)[std::size_t(i)])
            result.files << std::move(*(*files)[std::size_t(i)]);
        else if (!(*reasons)[std::size_t(i)].isEmpty())
            result.failures << (*reasons)[std::size_t(i)];
    }
    return result;
}

} // namespace lumaro::report
