// SPDX-License-Identifier: GPL-3.0-or-later
// How much a picture looks drawn (illustration, cartoon, drawing) rather than photographed.
#pragma once

#include <QImage>
#include <QString>

#include <memory>

namespace lumaro::platform {

struct DrawingScore
{
    float drawing = 0.f; // 0..1
    QString error;       // empty on success
};

// One classifier per thread. A null image gives an error, never a throw.
class DrawingClassifier
{
public:
    virtual ~DrawingClassifier() = default;
    virtual DrawingScore score(const QImage& image) = 0;
};

// The installed model (a MobileNetV2 of five classes of which only "Drawing" is trusted), or nullptr
// (logged once per process).
std::unique_ptr<DrawingClassifier> makeDrawingClassifier();

} // namespace lumaro::platform
