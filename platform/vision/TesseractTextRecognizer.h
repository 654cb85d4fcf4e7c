// SPDX-License-Identifier: GPL-3.0-or-later
// Text recognition with Tesseract 5 (English and simplified Chinese), one best candidate per line.
#pragma once

#include "platform/vision/TextRecognizer.h"

#include <memory>

namespace lumaro::platform {

// Not thread-safe: one instance per worker; made once, since loading chi_sim takes a good part of a second.
// Pictures whose long side is above maxSide() are scaled down first: text in a photo stays legible at that
// size and recognition time grows with the pixel count. Lines the engine is unsure of (mean word confidence
// below minimumConfidence()) and lines without a letter or digit are photo texture, not text, and are
// dropped.
class TesseractTextRecognizer final : public TextRecognizer
{
public:
    // nullptr when Tesseract or one of the languages cannot be initialised (the reason is logged).
    static std::unique_ptr<TesseractTextRecognizer>
    create(const QString& languages = QStringLiteral("eng+chi_sim"));
    ~TesseractTextRecognizer() override;

    TextRecognition recognize(const QImage& image) override;
    // The page turned counter-clockwise by `levelDegrees` first (see PageSkew_p.h); `meanConfidence`, when
    // given, receives the engine's mean word confidence (0..100) over the page.
    TextRecognition recognize(const QImage& image, double levelDegrees, int* meanConfidence);

    static int maxSide() { return 1600; }
    static int minimumConfidence() { return 60; }

private:
    TextRecognition recognizeLines(const QImage& image, double levelDegrees, int* meanConfidence);

    struct Engine;
    explicit TesseractTextRecognizer(std::unique_ptr<Engine> engine);
    std::unique_ptr<Engine> m_engine;
};

} // namespace lumaro::platform
