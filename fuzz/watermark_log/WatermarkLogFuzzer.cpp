// SPDX-License-Identifier: GPL-3.0-or-later
// A watermark sort's move log as a crash, a sync tool or a hand edit may leave it, undone. The log names the
// folders it moved between; they are pinned to the scratch folder so that the run never reaches a file of
// this machine. Whatever the log says, every picture's bytes are still somewhere afterwards.
#include "fuzz/FuzzScratch.h"
#include "vision/WatermarkSorter.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

#include <cstdlib>

using namespace lumaro;

namespace {

QSet<QByteArray> picturesUnder(const QString& folder)
{
    QSet<QByteArray> contents;
    QDirIterator it(folder, {QStringLiteral("*.JPG")}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        if (file.open(QIODevice::ReadOnly))
            contents.insert(file.readAll());
    }
    return contents;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    fuzz::FuzzScratch::clear();
    const QString shoot = fuzz::FuzzScratch::path(QStringLiteral("shoot"));
    const QString sorted = fuzz::FuzzScratch::path(QStringLiteral("sorted"));
    fuzz::FuzzScratch::write(QStringLiteral("shoot/IMG_0002.JPG"), QByteArrayLiteral("picture two"));
    fuzz::FuzzScratch::write(QStringLiteral("sorted/lily/IMG_0001.JPG"), QByteArrayLiteral("picture one"));
    fuzz::FuzzScratch::write(QStringLiteral("sorted/lily/IMG_0002.JPG"), QByteArrayLiteral("picture two"));

    QByteArray log = fuzz::bytesOf(data, size);
    QJsonDocument document = QJsonDocument::fromJson(log);
    if (document.isObject()) {
        QJsonObject root = document.object();
        root.insert(QStringLiteral("sourceFolderPath"), shoot);
        root.insert(QStringLiteral("targetFolderPath"), sorted);
        log = QJsonDocument(root).toJson();
    }
    const QString path = fuzz::FuzzScratch::write(QStringLiteral("shoot/_index/watermark_moves_1.json"), log);

    const QSet<QByteArray> before = picturesUnder(fuzz::FuzzScratch::path());
    (void)vision::WatermarkSorter().undo(path);
    if (!picturesUnder(fuzz::FuzzScratch::path()).contains(before))
        std::abort();
    return 0;
}
