// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/WatermarkService.h"

#include "platform/Log.h"
#include "platform/vision/AnalysisImage.h"
#include "platform/vision/TextRecognizer.h"
#include "vision/IndexFolder.h"
#include "vision/VisionIndexNaming.h"
#include "vision/VisionMarkLoader.h"
#include "vision/WatermarkIndexFile.h"

#include <QDateTime>
#include <QDir>

namespace lumaro::vision {

using platform::Log;

namespace {

const QString kTagText = QString::fromLatin1(WatermarkService::kTag);

// The people family is every mark that extends the plain people mark (portrait, people screenshot).
bool isPeopleMark(const QString& mark)
{
    return mark.startsWith(QStringLiteral("MARK_PEOPLE"));
}

WatermarkResult readOne(WatermarkReader& reader, const QString& folder, const QString& name)
{
    WatermarkResult result;
    result.fileName = name;
    result.filePath = QDir(folder).filePath(name);
    QString error;
    const std::optional<platform::AnalysisImage> decoded =
        platform::AnalysisImageReader::read(result.filePath, WatermarkReader::kDecodeSide, &error);
    if (!decoded) {
        result.error = error.isEmpty() ? QStringLiteral("无法解码") : error;
        return result;
    }
    const WatermarkReading reading = reader.read(decoded->image);
    result.lines = reading.lines;
    result.error = reading.error;
    if (reading.found) {
        result.identifier = reading.found->identifier;
        result.kind = WatermarkIdentifier::kindText(reading.found->kind);
        result.text = reading.found->text;
    }
    return result;
}

} // namespace

int WatermarkRunResult::identified() const
{
    return int(std::count_if(results.begin(), results.end(),
                             [](const WatermarkResult& r) { return r.isIdentified(); }));
}

WatermarkService::WatermarkService(ReaderFactory makeReader) : m_makeReader(std::move(makeReader)) {}

std::unique_ptr<WatermarkReader> WatermarkService::withInstalledModels()
{
    // Lines only: a page reader would take a photo of a page, or a sign, for a page and never see the stamp.
    std::unique_ptr<platform::TextRecognizer> recognizer = platform::makeLineTextRecognizer();
    if (!recognizer)
        recognizer = platform::makeTextRecognizer();
    if (!recognizer)
        return nullptr;
    return std::make_unique<WatermarkReader>(std::move(recognizer));
}

WatermarkRunResult WatermarkService::run(const QString& folder, const QStringList& fileNames,
                                         const WatermarkRunOptions& options) const
{
    WatermarkRunResult outcome;
    const QString folderPath = QDir(folder).absolutePath();
    QStringList names;
    if (options.allPictures) {
        names = fileNames;
    } else {
        const std::optional<VisionMarks> marks = VisionMarkLoader::load(folderPath, kTagText);
        if (!marks) {
            Log::line(kTagText, QStringLiteral("没有 Vision 索引，请先分析此文件夹，或读取全部图片"));
            outcome.noVisionIndex = true;
            return outcome;
        }
        for (const QString& name : fileNames)
            if (isPeopleMark(marks->markByFileName.value(name)))
                names << name;
    }
    outcome.total = int(names.size());
    Log::line(kTagText, QStringLiteral("图像数量: ") + QString::number(names.size()));
    if (IndexFolder::isBlocked(folderPath, kTagText)) {
        outcome.indexFolderRefused = true;
        return outcome;
    }
    const QString stamp = VisionIndexNaming::runStamp(QDateTime::currentDateTime());
    std::unique_ptr<WatermarkReader> reader = names.isEmpty() ? nullptr : m_makeReader();
    if (!names.isEmpty() && !reader) {
        Log::line(kTagText, QStringLiteral("❌ 文字识别不可用，无法读取水印"));
        outcome.noReader = true;
        return outcome;
    }
    for (const QString& name : names) {
        if (options.cancel && options.cancel->load()) {
            outcome.cancelled = true;
            Log::line(kTagText, QStringLiteral("已取消，未写入结果文件"));
            return outcome;
        }
        WatermarkResult result = readOne(*reader, folderPath, name);
        if (!result.error.isEmpty()) {
            Log::line(kTagText, QStringLiteral("识别失败: ") + name + QStringLiteral(" (") + result.error +
                                    QLatin1Char(')'));
            ++outcome.failed;
        } else if (result.isIdentified()) {
            Log::line(kTagText,
                      QStringLiteral("识别到标识: ") + name + QStringLiteral(" -> ") + result.identifier);
        }
        outcome.results << result;
        if (options.progress)
            options.progress(int(outcome.results.size()), outcome.total);
    }
    const std::optional<QString> indexFolder = IndexFolder::ensure(folderPath, kTagText);
    if (!indexFolder) {
        outcome.indexFolderRefused = true;
        return outcome;
    }
    const QString path =
        QDir(*indexFolder)
            .filePath(WatermarkIndexFile::fileName(stamp, VisionIndexNaming::folderKey(folderPath)));
    QString error;
    if (!WatermarkIndexFile::write(
            path, {outcome.results, QDateTime::currentDateTimeUtc(), folderPath, options.allPictures},
            &error)) {
        Log::line(kTagText, QStringLiteral("保存失败: ") + error);
        return outcome;
    }
    outcome.indexPath = path;
    Log::line(kTagText, QStringLiteral("保存成功: ") + path);
    return outcome;
}

} // namespace lumaro::vision
