// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/CleanOffer.h"

namespace lumaro::cards {

namespace {

constexpr qsizetype minimumMatched = 4;

} // namespace

CleanOffer CleanOffer::decide(const AnalysisResults& results)
{
    const qsizetype matched = results.matchedFiles.size();
    if (matched == 0)
        return {Kind::nothingMatched, QStringLiteral("两个文件夹里，没有匹配的内容，请再检查一下")};
    if (matched < minimumMatched)
        return {Kind::tooFewMatched, QStringLiteral("匹配数量较少（≤3），为防误删暂不提供清理")};
    if (results.unmatchedFiles.isEmpty())
        return {Kind::nothingToClean, QStringLiteral("未发现可清理的RAW文件")};
    return {Kind::clean, QString(), int(results.unmatchedFiles.size()), results.unmatchedTotalSize};
}

} // namespace lumaro::cards
