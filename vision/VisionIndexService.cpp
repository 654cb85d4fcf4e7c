// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/VisionIndexService.h"

#include "vision/IndexFolder.h"
#include "vision/VisionIndexFile.h"
#include "vision/VisionIndexNaming.h"
#include "vision/VisionSummaryService.h"

#include "platform/Log.h"
#include "platform/NotificationCenter.h"
#include "platform/process/HeapMemory.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSemaphore>
#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace lumaro::vision {

using platform::Log;

namespace {

const QString kTag = QStringLiteral("VISION_INDEX");

// Counts the pictures of a run that are still under way; wait() returns once all have left.
class TaskGroup
{
public:
    void enter()
    {
        std::lock_guard lock(m_mutex);
        ++m_pending;
    }
    void leave()
    {
        std::lock_guard lock(m_mutex);
        if (--m_pending == 0)
            m_empty.notify_all();
    }
    void wait()
    {
        std::unique_lock lock(m_mutex);
        m_empty.wait(lock, [this] { return m_pending == 0; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_empty;
    int m_pending = 0;
};

// The one analyser of a run, shared by its workers: made on first need and released when the workers are
// done. A factory that failed is tried again by the next picture.
class SharedAnalyzer
{
public:
    explicit SharedAnalyzer(VisionIndexService::AnalyzerFactory make) : m_make(std::move(make)) {}
    ~SharedAnalyzer() { release(); }

    VisionPictureAnalyzer* get()
    {
        std::lock_guard lock(m_mutex);
        if (!m_analyzer)
            m_analyzer = m_make();
        return m_analyzer.get();
    }

    // The models and their networks' working memory (hundreds of MB) go back to the system, not only to the
    // heap: blocks the workers allocated since, such as the results, would otherwise hold the freed pages
    // in the process, and the window stayed that large after a run.
    void release()
    {
        std::lock_guard lock(m_mutex);
        if (!m_analyzer)
            return;
        m_analyzer.reset();
        platform::giveBackFreedMemory();
    }

private:
    VisionIndexService::AnalyzerFactory m_make;
    std::mutex m_mutex;
    std::unique_ptr<VisionPictureAnalyzer> m_analyzer;
};

void postDidUpdateOnMainThread(const QVariantMap& info)
{
    QCoreApplication* app = QCoreApplication::instance();
    if (!app)
        return;
    QMetaObject::invokeMethod(
        app,
        [info] {
            platform::NotificationCenter::shared().post(platform::notifications::visionIndexDidUpdate, info);
        },
        Qt::QueuedConnection);
}

bool isSafeName(const QString& name)
{
    return !name.isEmpty() && !name.contains(QLatin1Char('/')) && name != QLatin1String(".") &&
           name != QLatin1String("..");
}

} // namespace

VisionIndexService::VisionIndexService(AnalyzerFactory makeAnalyzer, int processorCount)
    : m_makeAnalyzer(std::move(makeAnalyzer)),
      m_processorCount(processorCount > 0 ? processorCount : QThread::idealThreadCount())
{
}

VisionIndexService::~VisionIndexService() = default;

VisionIndexService& VisionIndexService::shared()
{
    static VisionIndexService service;
    return service;
}

int VisionIndexService::concurrencyLimit(qsizetype pictureCount, int processorCount)
{
    if (pictureCount < 100)
        return 4;
    if (pictureCount <= 999)
        return std::min(std::max(processorCount, 4), 8);
    return std::min(std::max(processorCount, 6), 12);
}

QVariantMap VisionIndexService::didUpdateInfo(const QString& folder, const QString& filePath,
                                              const VisionRecognitionResult* result)
{
    QVariantMap info{{QStringLiteral("folderPath"), folder}, {QStringLiteral("filePath"), filePath}};
    if (result) {
        info.insert(QStringLiteral("classification"), result->classificationMark);
        info.insert(QStringLiteral("objects"), result->recognizedObjects);
        info.insert(QStringLiteral("scene"), result->sceneClassification);
        info.insert(QStringLiteral("text"), result->recognizedText);
        info.insert(QStringLiteral("pixelWidth"), result->pixelWidth);
        info.insert(QStringLiteral("pixelHeight"), result->pixelHeight);
    }
    return info;
}

std::optional<VisionRecognitionResult> VisionIndexService::resultFromUpdate(const QVariantMap& info)
{
    if (!info.contains(QStringLiteral("classification")))
        return std::nullopt;
    VisionRecognitionResult result;
    result.filePath = info.value(QStringLiteral("filePath")).toString();
    result.fileName = QFileInfo(result.filePath).fileName();
    result.classificationMark = info.value(QStringLiteral("classification")).toString();
    result.recognizedObjects = info.value(QStringLiteral("objects")).toStringList();
    result.sceneClassification = info.value(QStringLiteral("scene")).toStringList();
    result.recognizedText = info.value(QStringLiteral("text")).toStringList();
    result.pixelWidth = info.value(QStringLiteral("pixelWidth")).toInt();
    result.pixelHeight = info.value(QStringLiteral("pixelHeight")).toInt();
    return result;
}

VisionIndexRunResult VisionIndexService::run(const QString& folder, const QStringList& fileNames,
                                             const VisionIndexRunOptions& options)
{
    VisionIndexRunResult outcome;
    const QString folderPath = QDir(folder).absolutePath();
    QStringList names;
    for (const QString& name : fileNames) {
        if (isSafeName(name))
            names << name;
    }
    outcome.total = int(names.size());
    const int limit = options.jobs > 0 ? options.jobs : concurrencyLimit(names.size(), m_processorCount);
    Log::line(kTag, QStringLiteral("图像数量: ") + QString::number(names.size()));
    Log::line(kTag, QStringLiteral("并发数设置: ") + QString::number(limit) +
                        QStringLiteral(" (CPU核心数: ") + QString::number(m_processorCount) +
                        QLatin1Char(')'));

    // Checked before the work as well as before writing: a run whose files could not be kept is not started.
    // Nothing is created yet, so a cancelled run leaves the folder as it found it.
    if (IndexFolder::isBlocked(folderPath, kTag)) {
        outcome.indexFolderRefused = true;
        return outcome;
    }
    const QString stamp = VisionIndexNaming::runStamp(QDateTime::currentDateTime());

    VisionStageTimes times;
    SharedAnalyzer analyzer(m_makeAnalyzer);
    QSemaphore admission(limit);
    // Admitted pictures beyond the processors wait here, before decoding: two more pictures in flight only
    // held their decoded copies and buffers without making the run any faster.
    QSemaphore working(std::max(1, std::min(limit, m_processorCount)));
    TaskGroup group;
    std::mutex resultsMutex;
    int done = 0;
    QThreadPool pool;
    pool.setMaxThreadCount(limit);
    for (const QString& name : names) {
        if (options.cancel && options.cancel->load()) {
            outcome.cancelled = true;
            break;
        }
        admission.acquire();
        group.enter();
        pool.start([&, name] {
            const QString path = QDir(folderPath).filePath(name);
            std::optional<VisionRecognitionResult> result;
            QString reason = QStringLiteral("no analyser could be made");
            working.acquire();
            if (VisionPictureAnalyzer* shared = analyzer.get())
                result = shared->analyze(path, &times, &reason);
            working.release();
            {
                std::lock_guard lock(resultsMutex);
                if (result)
                    outcome.results << *result;
                else {
                    Log::line(kTag, QStringLiteral("识别失败: ") + name);
                    ++outcome.failed;
                    outcome.failures.append({name, reason});
                }
                ++done;
                if (options.onPictureFinished)
                    options.onPictureFinished(result ? &*result : nullptr, done, outcome.total);
            }
            postDidUpdateOnMainThread(didUpdateInfo(folderPath, path, result ? &*result : nullptr));
            admission.release();
            group.leave();
        });
    }
    group.wait();
    analyzer.release();
    outcome.decodeSeconds = double(times.decode.load()) / 1e9;
    outcome.classificationSeconds = double(times.classification.load()) / 1e9;
    outcome.objectsSeconds = double(times.objects.load()) / 1e9;
    outcome.peopleSeconds = double(times.people.load()) / 1e9;
    outcome.facesSeconds = double(times.faces.load()) / 1e9;
    outcome.drawingSeconds = double(times.drawing.load()) / 1e9;
    outcome.textSeconds = double(times.text.load()) / 1e9;
    if (outcome.cancelled) {
        Log::line(kTag, QStringLiteral("已取消，未写入索引文件"));
        return outcome;
    }

    const std::optional<QString> indexFolder = IndexFolder::ensure(folderPath, kTag);
    if (!indexFolder) {
        outcome.indexFolderRefused = true;
        return outcome;
    }
    const QString key = VisionIndexNaming::folderKey(folderPath);
    const QDateTime generatedAt = QDateTime::currentDateTimeUtc();
    const QString indexPath = QDir(*indexFolder).filePath(VisionIndexNaming::indexFileName(stamp, key));
    if (!VisionIndexFile::write(indexPath, {outcome.results, generatedAt, folderPath})) {
        Log::line(kTag, QStringLiteral("保存失败"));
        return outcome;
    }
    outcome.indexPath = indexPath;
    Log::line(kTag, QStringLiteral("保存成功: ") + indexPath);
    const QString summaryPath = QDir(*indexFolder).filePath(VisionIndexNaming::summaryFileName(stamp, key));
    if (VisionSummaryService::write(summaryPath, outcome.results, generatedAt, folderPath)) {
        outcome.summaryPath = summaryPath;
        Log::line(kTag, QStringLiteral("摘要保存成功: ") + summaryPath);
    }
    return outcome;
}

} // namespace lumaro::vision
