// SPDX-License-Identifier: GPL-3.0-or-later
// Pose tiles: each person cut out of their picture with a margin, the skeleton and the deciding segments
// drawn, the pose and action as a caption; and one contact sheet of every tile of an export.
#pragma once

#include "pose/PicturePoseAnalyzer.h"

#include <QImage>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace lumaro::pose {

// One export into one folder; any single thread. Files are only ever created, never replaced: a name that is
// taken gets "_2", "_3"… ("IMG_1_person1_2.jpg"), so exporting twice into one folder keeps both.
class PoseTileExporter
{
public:
    // Margin around the person's box, as a share of its height, each side.
    static constexpr double kMargin = 0.15;
    // The long side of a tile's picture; a small person is enlarged up to kMostEnlargement times.
    static constexpr int kTileSide = 640;
    static constexpr double kMostEnlargement = 4.0;
    static constexpr int kSheetCell = 240;
    // The picture is decoded again for its tiles at this long side: the analysis copy is too small for a
    // person a sixth of the frame tall.
    static constexpr int kSourceSide = 2048;
    static constexpr int kSheetColumns = 6;

    explicit PoseTileExporter(QString folder);

    // The tile of `person` (numbered from 1) of a picture, `picture` upright at any size.
    static QImage renderTile(const QImage& picture, const AnalysedPerson& person, int number);
    // What a tile's caption says: "#1 POSE_STAND · 站立 Stand · 全景".
    static QString caption(const AnalysedPerson& person, int number);

    // Writes a tile for every person of the analysis; the number written. Failures are kept in failures().
    int addPicture(const QImage& picture, const PicturePoseAnalysis& analysis);
    // The contact sheet of every tile written so far, "pose_contact_sheet.jpg"; nullopt when there is no tile
    // or it could not be written (the reason in failures()).
    std::optional<QString> writeContactSheet();

    const QStringList& written() const { return m_written; }
    const QStringList& failures() const { return m_failures; }

    // Writes `image` as JPEG under `fileName` in `folder`, or under the first free "_2", "_3"… variant; the
    // path written, or nullopt with the reason in `error`. The file is created exclusively, so a file that
    // appears meanwhile is not replaced either.
    static std::optional<QString> writeNew(const QImage& image, const QString& folder,
                                           const QString& fileName, QString* error = nullptr);

private:
    QString m_folder;
    std::vector<std::pair<QImage, QString>> m_sheet; // small copies with their labels
    QStringList m_written;
    QStringList m_failures;
};

} // namespace lumaro::pose
