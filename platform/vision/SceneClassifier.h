// SPDX-License-Identifier: GPL-3.0-or-later
// Scene classification of a picture: the classifier's observations, best first.
#pragma once

#include <QImage>
#include <QString>

#include <memory>
#include <vector>

namespace lumaro::platform {

struct SceneObservation
{
    QString identifier; // snake_case ("bald_eagle", "web_site")
    float confidence = 0.f;
    // What sort of thing the class is, for classes that come in many close kinds: "animal", "food" or
    // "plant" (a dog's breed or a dish may be unsure where that it is a dog or a dish is not); else empty.
    QString kind;
};

struct SceneClassification
{
    std::vector<SceneObservation> observations; // best first
    QString error;                              // empty on success
    // What the network saw, before it is narrowed to ImageNet's classes: the pooled description its last
    // layer reads (1280 numbers for MobileNetV2), of the centre the classes are worked out from and then of
    // the whole picture squeezed square. What kind of picture it is (a painting, a screen, a view) is read
    // from this better than from the thousand classes, none of which is that. Empty when the model has no
    // such layer.
    std::vector<float> description;
};

// One classifier per thread. A null image gives an error, never a throw.
class SceneClassifier
{
public:
    virtual ~SceneClassifier() = default;
    virtual SceneClassification classify(const QImage& image) = 0;
};

// The classifier of the installed model, or nullptr when none is installed (logged once per process).
std::unique_ptr<SceneClassifier> makeSceneClassifier();

// A classifier label in the form identifiers take: lower case, runs of anything but letters and digits
// as one "_", apostrophes dropped ("carpenter's kit" → "carpenters_kit", "web site" → "web_site").
QString snakeCaseIdentifier(const QString& label);

} // namespace lumaro::platform
