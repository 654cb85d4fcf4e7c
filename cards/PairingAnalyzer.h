// SPDX-License-Identifier: GPL-3.0-or-later
// Pairs the RAW files of one folder with the JPG files of another by file stem, for the pairing clean and RAW pick.
#pragma once

#include "cards/AnalysisResults.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace lumaro::cards {

// A RAW and a JPG match when their stems are equal once both are lower-cased (IMG_0001.JPG with img_0001.cr3).
// Only the folders' direct files are seen; a RAW in a sub-folder never is. Both folders may be the same folder.
// Matching is one hash of the JPG stems, so 100,000 names on each side take milliseconds; the outcome is the same
// as comparing each RAW with every JPG in list order and stopping at the first equal stem.
// Blocking; any thread (the panels run it on a pool thread).
class PairingAnalyzer
{
public:
    // nullopt when both paths are set; otherwise the text that asks for them, "请先选择JPG和RAW文件夹".
    static std::optional<QString> problemWithFolders(const QString& jpgFolder, const QString& rawFolder);

    // Lists, matches and sums, logging each step. A folder that cannot be listed is logged and counts as empty.
    static AnalysisResults analyze(const QString& jpgFolder, const QString& rawFolder);

    // The matching kernel on bare names: for each RAW name whether it has a JPG partner; `matchedJpgCount` receives
    // how many JPG names have a RAW partner.
    static std::vector<bool> matchRawNames(const QStringList& jpgNames, const QStringList& rawNames,
                                           int* matchedJpgCount = nullptr);
};

} // namespace lumaro::cards
