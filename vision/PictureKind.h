// SPDX-License-Identifier: GPL-3.0-or-later
// What kind of picture one is, read from the scene classifier's description of it.
#pragma once

#include <array>
#include <optional>
#include <vector>

namespace lumaro::vision {

// In the order the fitted weights give them (bench/train-picture-kind.py).
enum class PictureKind
{
    people,
    document,
    screenshot,
    illustration,
    structure,
    outdoor,
    thing,
    interior
};
inline constexpr int kPictureKinds = 8;

struct PictureKindScores
{
    std::array<float, kPictureKinds> shares{}; // add up to 1

    float of(PictureKind kind) const { return shares[size_t(kind)]; }
    PictureKind likeliest() const;
};

// A softmax regression fitted to the picture sets the bench keeps (their expected marks), on the pooled
// description MobileNetV2 computes before its ImageNet classes. ImageNet has no class for "a painting", "a
// window on a screen" or "a view", so a photo of a lake spreads itself over "boathouse", "seashore" and
// "valley" and a painting over whatever it shows; the description underneath still tells them apart.
// Pure; nullopt when the description is not the size the weights were fitted to (another model).
std::optional<PictureKindScores> pictureKindOf(const std::vector<float>& description);

} // namespace lumaro::vision
