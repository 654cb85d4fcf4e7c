// SPDX-License-Identifier: GPL-3.0-or-later
#include "report/ExposureGrouper.h"

#include <QFileInfo>
#include <QHash>

#include <algorithm>

namespace lumaro::report {

namespace {

QString instantKey(const ShotFile& file)
{
    const platform::CaptureMetadata& m = file.metadata;
    const QString camera = m.make + u'|' + m.model + u'|' + m.bodySerial;
    if (m.captured)
        return camera + QStringLiteral("|t") + QString::number(m.captured->toSecsSinceEpoch());
    // No time: the name stem is all there is (IMG_0001.JPG with IMG_0001.CR2).
    const QString name = QFileInfo(file.path).fileName();
    return camera + QStringLiteral("|n") + name.left(name.lastIndexOf(u'.')).toLower();
}

template <typename T> bool agree(const std::optional<T>& a, const std::optional<T>& b)
{
    return !a || !b || *a == *b;
}

bool sameShot(const ShotFile& a, const ShotFile& b)
{
    const platform::CaptureMetadata& m = a.metadata;
    const platform::CaptureMetadata& n = b.metadata;
    if (m.hasSubSeconds && n.hasSubSeconds && m.captured != n.captured)
        return false;
    return agree(m.imageNumber, n.imageNumber) && agree(m.shutterCount, n.shutterCount);
}

template <typename T> void fill(std::optional<T>& into, const std::optional<T>& from)
{
    if (!into)
        into = from;
}

void fillText(QString& into, const QString& from)
{
    if (into.isEmpty())
        into = from;
}

// The JPEG's header gives the picture as seen (its size, its orientation); a RAW's may describe a thumbnail.
void mergeFacts(platform::CaptureMetadata& into, const platform::CaptureMetadata& from)
{
    fillText(into.make, from.make);
    fillText(into.model, from.model);
    fillText(into.bodySerial, from.bodySerial);
    fillText(into.lens, from.lens);
    fillText(into.lensSerial, from.lensSerial);
    if (!into.captured || (!into.hasSubSeconds && from.hasSubSeconds && from.captured)) {
        into.captured = from.captured;
        into.hasSubSeconds = from.hasSubSeconds;
    }
    if (into.width <= 0 || into.height <= 0) {
        into.width = from.width;
        into.height = from.height;
        into.orientation = from.orientation;
    }
    fill(into.focalLength, from.focalLength);
    fill(into.focalLength35mm, from.focalLength35mm);
    fill(into.iso, from.iso);
    fill(into.fNumber, from.fNumber);
    fill(into.exposureSeconds, from.exposureSeconds);
    fill(into.flashFired, from.flashFired);
    fill(into.imageNumber, from.imageNumber);
    fill(into.shutterCount, from.shutterCount);
    fill(into.rating, from.rating);
}

int kindRank(FileKind kind)
{
    return kind == FileKind::jpeg ? 0 : kind == FileKind::heif ? 1 : kind == FileKind::other ? 2 : 3;
}

} // namespace

QString cameraName(const platform::CaptureMetadata& facts)
{
    // Most makers repeat their name in the model ("Canon" + "Canon EOS R5", "NIKON CORPORATION" + "NIKON Z
    // 6"); say it once.
    const QString brand = facts.make.section(u' ', 0, 0);
    if (!brand.isEmpty() && facts.model.startsWith(brand, Qt::CaseInsensitive))
        return facts.model;
    return QString(facts.make + u' ' + facts.model).trimmed();
}

QList<Exposure> ExposureGrouper::group(const QList<ShotFile>& files)
{
    QHash<QString, QList<int>> byInstant;
    QStringList order; // first appearance, so the result follows the listing
    for (int i = 0; i < files.size(); ++i) {
        const QString key = instantKey(files.at(i));
        auto it = byInstant.find(key);
        if (it == byInstant.end()) {
            order << key;
            it = byInstant.insert(key, {});
        }
        it->append(i);
    }

    QList<Exposure> exposures;
    for (const QString& key : order) {
        QList<int> members = byInstant.value(key);
        std::stable_sort(members.begin(), members.end(), [&](int a, int b) {
            return QFileInfo(files.at(a).path).fileName() < QFileInfo(files.at(b).path).fileName();
        });
        QList<QList<int>> shots;
        for (const int index : members) {
            const ShotFile& file = files.at(index);
            auto fits = [&](const QList<int>& shot) {
                return std::all_of(shot.begin(), shot.end(), [&](int other) {
                    return files.at(other).kind != file.kind && sameShot(files.at(other), file);
                });
            };
            const auto shot = std::find_if(shots.begin(), shots.end(), fits);
            if (shot == shots.end())
                shots.append(QList<int>{index});
            else
                shot->append(index);
        }
        for (const QList<int>& shot : shots) {
            Exposure exposure;
            exposure.files = shot;
            QList<int> byKind = shot;
            std::stable_sort(byKind.begin(), byKind.end(), [&](int a, int b) {
                return kindRank(files.at(a).kind) < kindRank(files.at(b).kind);
            });
            exposure.facts = files.at(byKind.first()).metadata;
            for (qsizetype k = 1; k < byKind.size(); ++k)
                mergeFacts(exposure.facts, files.at(byKind.at(k)).metadata);
            exposure.camera = cameraName(exposure.facts);
            exposures << exposure;
        }
    }
    return exposures;
}

} // namespace lumaro::report
