// SPDX-License-Identifier: GPL-3.0-or-later
#include "rolls/RollStage.h"

#include "rolls/AlbumPage.h"

#include "browse/state/FileSystemService.h"
#include "platform/AppPaths.h"
#include "platform/FileCopier.h"
#include "platform/XattrTagStore.h"
#include "platform/files/FileNameCodec.h"
#include "platform/files/FileStamp.h"
#include "platform/metadata/LocationTags.h"
#include "platform/picture/PictureReader.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QImageWriter>
#include <QPainter>
#include <QSaveFile>
#include <QtConcurrent/QtConcurrentMap>

#include <mutex>

namespace lumaro::rolls {

namespace {

struct Job
{
    StagedPicture picture;
    QString source;
    QString error;
};

bool savedJpeg(const QImage& image, const QString& path, int quality, QString* error)
{
    QImage flat = image;
    if (flat.hasAlphaChannel()) {
        // JPEG has no transparency: a PNG's clear parts become white, as a browser shows them on a light
        // page.
        flat = QImage(image.size(), QImage::Format_RGB32);
        flat.fill(Qt::white);
        QPainter painter(&flat);
        painter.drawImage(0, 0, image);
    }
    QSaveFile file(path);
    QImageWriter writer(&file, "jpeg");
    writer.setQuality(quality);
    writer.setOptimizedWrite(true);
    writer.setProgressiveScanWrite(true);
    if (!file.open(QIODevice::WriteOnly) || !writer.write(flat) || !file.commit()) {
        *error = writer.error() != QImageWriter::UnknownError ? writer.errorString() : file.errorString();
        return false;
    }
    return true;
}

// Makes the preview, the thumbnail and (when asked) the original's copy of one picture.
void makeCopies(Job& job, const QString& upload, const StageOptions& options)
{
    const platform::DecodedPicture decoded =
        platform::PictureReader::read({job.source, RollStage::kPreviewSide, true, 0});
    if (decoded.isNull()) {
        job.error = decoded.error.isEmpty() ? QStringLiteral("cannot be decoded") : decoded.error;
        return;
    }
    const QString preview = upload + QStringLiteral("/p/") + job.picture.base + QStringLiteral(".jpg");
    const QImage thumbnail = decoded.image.scaled(RollStage::kThumbnailSide, RollStage::kThumbnailSide,
                                                  Qt::KeepAspectRatio, Qt::SmoothTransformation);
    if (!savedJpeg(decoded.image, preview, 85, &job.error) ||
        !savedJpeg(thumbnail, upload + QStringLiteral("/t/") + job.picture.base + QStringLiteral(".jpg"), 80,
                   &job.error))
        return;
    // Qt writes no EXIF, so a preview carries no location unless it is put there on purpose.
    if (options.keepLocation && !platform::LocationTags::copy(job.source, preview, &job.error))
        return;
    if (!options.originals)
        return;
    const QString original = upload + QStringLiteral("/o/") + job.picture.original;
    if (!platform::FileCopier::copyReplacing(job.source, original, &job.error))
        return;
    if (!options.keepLocation && !platform::LocationTags::strip(original, &job.error) &&
        platform::LocationTags::has(original)) {
        // A format exiv2 cannot rewrite keeps its location: it stays home rather than leak where it was shot.
        QFile::remove(original);
        job.error = QStringLiteral("its location cannot be removed: %1").arg(job.error);
    }
}

// The upload folder's files by their path inside it; any other file (a picture removed from the folder, or a
// copy left by a killed run) is removed.
QHash<QString, qint64> keptFiles(const QString& folder, const QSet<QString>& keep)
{
    QHash<QString, qint64> files;
    QDirIterator it(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        const QString relative = QDir(folder).relativeFilePath(path);
        if (keep.contains(relative))
            files.insert(relative, it.fileInfo().size());
        else
            QFile::remove(path);
    }
    return files;
}

} // namespace

qint64 StageResult::bytes() const
{
    qint64 total = 0;
    for (const qint64 size : files)
        total += size;
    return total;
}

RollStage::RollStage(QString folder, const QString& key, StageOptions options)
    : m_folder(std::move(folder)),
      m_stageFolder(platform::AppPaths::cacheDir() + QStringLiteral("/rolls/") +
                    QString::fromLatin1(
                        QCryptographicHash::hash(key.toUtf8(), QCryptographicHash::Sha1).toHex().left(16))),
      m_options(options)
{
}

QString RollStage::publishedBase(const QString& sourceName, const QString& source) const
{
    QString stem = QFileInfo(sourceName).completeBaseName();
    for (QChar& c : stem) {
        if (!(c.isLetterOrNumber() && c.unicode() < 128) && c != QLatin1Char('-') && c != QLatin1Char('_'))
            c = QLatin1Char('_');
    }
    // The hash keeps "a b.jpg" and "a_b.jpg", or "x.JPG" and "x.CR2", apart; and because it covers the file's
    // size, time and the copies' options, an edited picture gets a new name. Stores that keep neither times
    // nor checksums (WebDAV) compare sizes only, and a new preview of the same size would never be sent.
    // Asked by the name's bytes: QFileInfo misses a name that is not UTF-8, and its picture would keep its
    // published name however it was edited.
    const platform::FileStamp stamp = platform::FileStamp::of(source).value_or(platform::FileStamp{});
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(platform::FileNameCodec::encode(sourceName));
    const QByteArray version =
        QByteArray::number(stamp.size) + '/' + QByteArray::number(stamp.modifiedNs / 1'000'000) + '/' +
        QByteArray::number(int(m_options.originals)) + QByteArray::number(int(m_options.keepLocation));
    hash.addData(version);
    return stem.left(60) + QLatin1Char('-') + QString::fromLatin1(hash.result().toHex().left(10));
}

StageResult RollStage::update(const std::function<void(qsizetype, qsizetype)>& progress,
                              const std::atomic_bool* cancel) const
{
    StageResult result;
    result.uploadFolder = m_stageFolder + QStringLiteral("/upload");
    for (const char* sub : {"/p", "/t", "/o"})
        QDir().mkpath(result.uploadFolder + QLatin1String(sub));

    std::vector<Job> jobs;
    QSet<QString> keep{QStringLiteral("index.html")};
    for (const QString& name : browse::FileSystemService::shared().loadImageFileNames(m_folder)) {
        Job job;
        job.source = m_folder + QLatin1Char('/') + name;
        job.picture.sourceName = name;
        job.picture.base = publishedBase(name, job.source);
        job.picture.caption = QFileInfo(name).completeBaseName();
        job.picture.tags = platform::XattrTagStore::shared().tags(job.source).value_or(QStringList{});
        if (m_options.originals)
            job.picture.original = job.picture.base + QLatin1Char('.') + QFileInfo(name).suffix().toLower();
        jobs.push_back(std::move(job));
    }

    // Copies are written whole under their final name, and the name says which version of the picture they
    // show: a copy that is there is up to date.
    std::vector<Job*> stale;
    for (Job& job : jobs) {
        const bool copiesThere =
            QFileInfo::exists(result.uploadFolder + QStringLiteral("/p/") + job.picture.base +
                              QStringLiteral(".jpg")) &&
            QFileInfo::exists(result.uploadFolder + QStringLiteral("/t/") + job.picture.base +
                              QStringLiteral(".jpg")) &&
            (!m_options.originals ||
             QFileInfo::exists(result.uploadFolder + QStringLiteral("/o/") + job.picture.original));
        if (!copiesThere)
            stale.push_back(&job);
    }

    std::mutex progressLock;
    qsizetype done = qsizetype(jobs.size() - stale.size());
    if (progress)
        progress(done, qsizetype(jobs.size()));
    QtConcurrent::blockingMap(stale, [&](Job* job) {
        if (cancel && cancel->load())
            return;
        makeCopies(*job, result.uploadFolder, m_options);
        const std::lock_guard lock(progressLock);
        ++done;
        if (progress)
            progress(done, qsizetype(jobs.size()));
    });
    result.cancelled = cancel && cancel->load();

    for (const Job& job : jobs) {
        if (job.error.isEmpty()) {
            result.pictures.append(job.picture);
            keep << QStringLiteral("p/") + job.picture.base + QStringLiteral(".jpg")
                 << QStringLiteral("t/") + job.picture.base + QStringLiteral(".jpg");
            if (m_options.originals)
                keep << QStringLiteral("o/") + job.picture.original;
        } else
            result.failures.append(job.picture.sourceName + QStringLiteral(": ") + job.error);
    }
    if (!result.cancelled) {
        QString error;
        if (!AlbumPage::write(result.uploadFolder + QStringLiteral("/index.html"), m_options.title,
                              result.pictures, &error))
            result.failures.append(QStringLiteral("index.html: ") + error);
    }
    result.files = keptFiles(result.uploadFolder, keep);
    return result;
}

} // namespace lumaro::rolls
