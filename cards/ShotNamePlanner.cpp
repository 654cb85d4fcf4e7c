// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/ShotNamePlanner.h"

#include "cards/PairingFileTypes.h"

#include "platform/FolderFiles.h"
#include "platform/files/FileNameCodec.h"
#include "platform/files/FileStamp.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <map>
#include <vector>

namespace lumaro::cards {

namespace {

QString extensionOf(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.mid(dot) : QString();
}

QString suffixed(const QString& stem, int n)
{
    return n == 0 ? stem : stem + QLatin1Char('_') + QString::number(n);
}

struct Shot
{
    QString stem;                                   // as the first file spells it
    std::vector<std::pair<QString, QString>> files; // source, kind folder
};

bool sameFile(const QString& target, const CardFileStamp& stamp)
{
    // By the name's bytes, as the card was scanned: QFileInfo would miss a name in another encoding.
    const auto found = platform::FileStamp::of(target);
    return found && platform::FileNameCodec::isFile(target) && found->size == stamp.size &&
           found->modifiedNs / 1'000'000 == stamp.modifiedMs;
}

} // namespace

ShotNamePlanner::ShotNamePlanner(const QStringList& kindFolders)
{
    for (const QString& folder : kindFolders) {
        // A folder not made yet takes nothing.
        const auto entries = platform::FolderFiles::entries(folder);
        for (const platform::FolderEntry& entry : entries.value_or(std::vector<platform::FolderEntry>{}))
            m_taken.insert(PairingFileTypes::matchingKey(PairingFileTypes::stem(entry.name)));
    }
}

void ShotNamePlanner::keepStems(const QHash<QString, QString>& stemsByShot)
{
    m_kept = stemsByShot;
    for (const QString& stem : stemsByShot)
        m_taken.insert(PairingFileTypes::matchingKey(stem));
}

QHash<QString, PlannedName> ShotNamePlanner::plan(const QList<std::pair<QString, QString>>& files,
                                                  const QHash<QString, CardFileStamp>& stamps,
                                                  const std::function<QString(const QString&)>& shotOf)
{
    // The camera's own order (100CANON before 101CANON, IMG_0001 before IMG_0002) decides who keeps a plain
    // name.
    QList<std::pair<QString, QString>> ordered = files;
    std::sort(ordered.begin(), ordered.end());
    std::map<QString, Shot> shots;
    std::vector<QString> order;
    for (const auto& [source, folder] : ordered) {
        const QString key = shotOf(source);
        auto [it, added] = shots.try_emplace(key);
        if (added) {
            it->second.stem = PairingFileTypes::stem(QFileInfo(source).fileName());
            order.push_back(key);
        }
        it->second.files.emplace_back(source, folder);
    }

    QHash<QString, PlannedName> planned;
    for (const QString& key : order) {
        const Shot& shot = shots.at(key);
        // Each file keeps its own spelling of the stem ("IMG_0002.JPG" with "img_0002.cr2"); the shot shares
        // the suffix.
        const auto nameOf = [](const QString& source, int n) -> QString {
            const QString name = QFileInfo(source).fileName();
            return suffixed(PairingFileTypes::stem(name), n) + extensionOf(name);
        };
        const QString kept = m_kept.value(key);
        if (!kept.isEmpty()) {
            for (const auto& [source, folder] : shot.files)
                planned.insert(source, {kept + extensionOf(QFileInfo(source).fileName()), false});
            continue;
        }
        int chosen = -1;
        QSet<QString> inPlace;
        if (m_resuming) {
            // Killed between putting a file in place and remembering it: the file is there under the name it
            // got.
            for (int n = 0; n < 10 && chosen < 0; ++n) {
                for (const auto& [source, folder] : shot.files) {
                    if (sameFile(QDir(folder).filePath(nameOf(source, n)), stamps.value(source)))
                        inPlace.insert(source);
                }
                if (!inPlace.isEmpty())
                    chosen = n;
            }
        }
        for (int n = 0; chosen < 0; ++n) {
            if (!m_taken.contains(PairingFileTypes::matchingKey(suffixed(shot.stem, n))))
                chosen = n;
        }
        m_taken.insert(PairingFileTypes::matchingKey(suffixed(shot.stem, chosen)));
        for (const auto& [source, folder] : shot.files)
            planned.insert(source, {nameOf(source, chosen), inPlace.contains(source)});
    }
    return planned;
}

} // namespace lumaro::cards
