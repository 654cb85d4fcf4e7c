// SPDX-License-Identifier: GPL-3.0-or-later
// The outcome of one pairing analysis of a JPG folder against a RAW folder.
#pragma once

#include <QStringList>

namespace lumaro::cards {

struct AnalysisResults
{
    QStringList jpgFiles;       // full paths of the JPG files found
    QStringList rawFiles;       // full paths of the RAW files found
    QStringList matchedFiles;   // RAW files that have a JPG partner
    QStringList unmatchedFiles; // RAW files without one: the clean candidates
    qint64 jpgTotalSize = 0;
    qint64 rawTotalSize = 0;
    qint64 matchedTotalSize = 0;
    qint64 unmatchedTotalSize = 0;
    bool isAnalyzed = false;

    // How many JPG files have a RAW partner (reported beside the matched RAW count).
    int matchedJpgCount = 0;
};

} // namespace lumaro::cards
