// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/PictureKind.h"

#include <algorithm>
#include <cmath>

namespace lumaro::vision {

namespace {
#include "vision/PictureKindWeights.inc"
static_assert(std::size(kKindBias) == kPictureKinds);
} // namespace

PictureKind PictureKindScores::likeliest() const
{
    return PictureKind(std::max_element(shares.begin(), shares.end()) - shares.begin());
}

std::optional<PictureKindScores> pictureKindOf(const std::vector<float>& description)
{
    if (description.size() != size_t(kDescriptionSize))
        return std::nullopt;
    std::array<double, kPictureKinds> logits{};
    for (int k = 0; k < kPictureKinds; ++k)
        logits[size_t(k)] = kKindBias[k];
    for (int i = 0; i < kDescriptionSize; ++i) {
        for (int k = 0; k < kPictureKinds; ++k)
            logits[size_t(k)] += double(description[size_t(i)]) * kKindWeights[i][k];
    }
    const double top = *std::max_element(logits.begin(), logits.end());
    double sum = 0.0;
    for (double& logit : logits)
        sum += (logit = std::exp(logit - top));
    PictureKindScores scores;
    for (int k = 0; k < kPictureKinds; ++k)
        scores.shares[size_t(k)] = float(logits[size_t(k)] / sum);
    return scores;
}

} // namespace lumaro::vision
