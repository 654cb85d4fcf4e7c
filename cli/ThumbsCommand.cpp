// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli thumbs FOLDER --size N --out DIR [--jobs N]: a JPEG thumbnail of every picture of FOLDER, decoded
// the way the app decodes its grid (the cheapest route per format).
//
// Output: DIR/<file name>.jpg (IMG_1.CR2 → IMG_1.CR2.jpg, so a.jpg and a.png never collide). Every thumbnail
// carries the JPEG comment "lumaro-cli thumbs"; an existing file in DIR is replaced only when it carries that
// comment (a thumbnail of an earlier run), any other file is left as it is and counted as skipped. Files are
// written to a temporary name and renamed, so an interrupted run leaves no half-written thumbnail.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"
#include "cli/FolderArgument.h"
#include "cli/ProgressBar.h"

#include "browse/state/FileSystemService.h"
#include "platform/FileReplacer.h"
#include "platform/Log.h"
#include "platform/files/FileNameCodec.h"
#include "platform/picture/PictureReader.h"

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImageWriter>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSemaphore>
#include <QThread>
#include <QThreadPool>

#include <vector>

namespace lumaro::cli {

namespace {

const QByteArray ownMarker = QByteArrayLiteral("lumaro-cli thumbs");

enum class Outcome { written, failed, skipped };

struct ThumbResult
{
    Outcome outcome = Outcome::failed;
    QString error;
};

bool isOwnOutput(const QString& path)
{
    bool read = false;
    const QByteArray head = platform::FileNameCodec::readAll(path, &read, 4096);
    return read && head.contains(ownMarker);
}

ThumbResult makeThumbnail(const QString& source, const QString& target, int size)
{
    // By the names' own bytes: two names that are not UTF-8 must not meet under one name Qt made up.
    const bool replacing = platform::FileNameCodec::exists(target);
    if (replacing && !isOwnOutput(target))
        return {Outcome::skipped, QStringLiteral("exists and is not a thumbnail of ours: kept")};
    const platform::DecodedPicture picture = platform::PictureReader::read(platform::PictureRequest{source, size});
    if (picture.isNull() || picture.isPartial()) // a batch thumbnail of half a picture would pass for the picture
        return {Outcome::failed, picture.error};
    QByteArray jpeg;
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(85);
    writer.setText(QStringLiteral("Software"), QString::fromLatin1(ownMarker));
    if (!writer.write(picture.image))
        return {Outcome::failed, writer.errorString()};
    QString error;
    const bool saved = replacing ? platform::FileReplacer::replaceContents(target, jpeg, &error)
                                 : platform::FileReplacer::createFile(target, jpeg, &error);
    if (!saved)
        return {Outcome::failed, error};
    return {Outcome::written, {}};
}


} // namespace

int runThumbs(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("thumbs"),
                     QStringLiteral("Write a JPEG thumbnail of every picture of FOLDER into DIR as <name>.jpg. An existing "
                                    "file in DIR is replaced only when it is a thumbnail written by this command."));
    line.addPositional(QStringLiteral("FOLDER"), QStringLiteral("The folder of pictures."));
    line.addOption({QStringLiteral("size"), QStringLiteral("Long side of the thumbnails in pixels (16-4096)."),
                    QStringLiteral("N"), QStringLiteral("256")});
    line.addOption({QStringLiteral("out"), QStringLiteral("The folder the thumbnails go to (created when missing)."),
                    QStringLiteral("DIR")});
    line.addOption({QStringLiteral("jobs"), QStringLiteral("Pictures decoded at once (default: processor count)."),
                    QStringLiteral("N")});
    line.addJsonOption();
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto checked = line.folderArgument(QStringLiteral("thumbs takes one folder"));
    if (!checked)
        return exitUsage;
    const auto size = line.number(QStringLiteral("size"), 16, 4096);
    if (!size)
        return line.usageError(QStringLiteral("--size must be a number from 16 to 4096"));
    const int defaultJobs = std::max(1, QThread::idealThreadCount());
    const auto jobs = line.isSet(QStringLiteral("jobs")) ? line.number(QStringLiteral("jobs"), 1, 64)
                                                         : std::optional<int>(defaultJobs);
    if (!jobs)
        return line.usageError(QStringLiteral("--jobs must be a number from 1 to 64"));
    if (!line.isSet(QStringLiteral("out")))
        return line.usageError(QStringLiteral("--out DIR is required"));
    const QString folder = *checked;
    const QString out = QFileInfo(line.value(QStringLiteral("out"))).absoluteFilePath();
    if (QDir::cleanPath(out) == QDir::cleanPath(QFileInfo(folder).absoluteFilePath()))
        return line.fail(QStringLiteral("--out must not be the picture folder itself"), exitUsage);
    if (const auto problem = problemWithOutputFolder(out))
        return line.fail(
            QStringLiteral("--out %1: %2; nothing was decoded").arg(escapedForLine(out), *problem),
            exitUsage);

    const QStringList names = browse::FileSystemService::shared().loadImageFileNames(folder);
    std::vector<ThumbResult> results(std::size_t(names.size()));
    QThreadPool pool;
    pool.setMaxThreadCount(*jobs);
    QSemaphore finished;
    QElapsedTimer timer;
    timer.start();
    const QDir source(folder);
    const QDir target(out);
    for (qsizetype i = 0; i < names.size(); ++i) {
        const QString from = source.filePath(names.at(i));
        const QString to = target.filePath(names.at(i) + QStringLiteral(".jpg"));
        ThumbResult* slot = &results[std::size_t(i)];
        const int side = *size;
        pool.start([from, to, side, slot, &finished] {
            *slot = makeThumbnail(from, to, side);
            finished.release();
        });
    }
    ProgressBar progress(QStringLiteral("thumbs"), names.size());
    for (qsizetype i = 0; i < names.size(); ++i) {
        finished.acquire();
        progress.advance();
    }
    pool.waitForDone();
    progress.finish();

    int written = 0, failed = 0, skipped = 0;
    for (qsizetype i = 0; i < names.size(); ++i) {
        const ThumbResult& result = results[std::size_t(i)];
        if (result.outcome == Outcome::written) {
            ++written;
            continue;
        }
        ++(result.outcome == Outcome::skipped ? skipped : failed);
        line.itemFailed(names.at(i), result.error);
    }
    const double seconds = double(timer.nsecsElapsed()) / 1e9;
    platform::Log::raw(QStringLiteral("PERF-THUMBS: %1 张, %2 s").arg(names.size()).arg(seconds, 0, 'f', 3));
    QTextStream& stdOut = standardOutput();
    if (line.json()) {
        const QJsonObject summary{{QStringLiteral("pictures"), int(names.size())}, {QStringLiteral("written"), written},
                                  {QStringLiteral("skipped"), skipped},           {QStringLiteral("failed"), failed},
                                  {QStringLiteral("out"), out},                    {QStringLiteral("seconds"), seconds}};
        stdOut << QJsonDocument(summary).toJson(QJsonDocument::Compact) << "\n";
    } else {
        stdOut << written << " thumbnails written to " << escapedForLine(out) << ", " << skipped << " skipped, "
               << failed << " failed\n";
    }
    stdOut.flush();
    return failed + skipped > 0 ? exitPartial : exitOk;
}

} // namespace lumaro::cli
