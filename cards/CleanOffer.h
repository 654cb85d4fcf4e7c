// SPDX-License-Identifier: GPL-3.0-or-later
// What the pairing clean offers after an analysis: the safety rule on the number of matched files.
#pragma once

#include "cards/AnalysisResults.h"

#include <QString>

namespace lumaro::cards {

// Fewer than 4 matched files offers no clean even with orphan RAW files: a near-empty overlap usually means the
// user picked unrelated folders. Any thread.
struct CleanOffer
{
    enum class Kind { nothingMatched, tooFewMatched, nothingToClean, clean };

    Kind kind = Kind::nothingMatched;
    QString message;     // the text shown instead of the clean button; empty when the button is shown
    int fileCount = 0;   // the unmatched RAW files offered
    qint64 totalSize = 0;

    bool canClean() const { return kind == Kind::clean; }

    static CleanOffer decide(const AnalysisResults& results);
};

} // namespace lumaro::cards
