// SPDX-License-Identifier: GPL-3.0-or-later
// Text in any picture: PP-OCR finds and reads the lines; clean pages go to Tesseract after levelling.
#pragma once

#include "platform/vision/TextRecognizer.h"

#include <functional>
#include <memory>

namespace lumaro::platform {

class TesseractTextRecognizer;
namespace detail {
class PaddleOcr;
}

// Not thread-safe: one per worker. Either engine may be missing (not both):
// - with the line detector, a picture without text lines costs one detection and no reading; a page of many
//   lines is levelled by the lines' own slant and read by Tesseract, kept when Tesseract is sure of it
//   (it reads clean print better), else every line is read by PP-OCR (photographed, tilted, Chinese text);
// - with Tesseract alone, the page is levelled by a projection search first.
class OcrTextRecognizer final : public TextRecognizer
{
public:
    using PageReaderFactory = std::function<std::unique_ptr<TesseractTextRecognizer>()>;
    // `makePages` is called when the first page needs it (Tesseract's Chinese data is large, and most
    // photos have no page); it may give nullptr.
    OcrTextRecognizer(std::unique_ptr<detail::PaddleOcr> lines, PageReaderFactory makePages);
    ~OcrTextRecognizer() override;

    TextRecognition recognize(const QImage& image) override;
    TextRecognition readLine(const QImage& image) override;

    static constexpr int kPageLines = 5;              // this many lines or more make a page
    static constexpr double kPageTextShare = 0.08;    // …covering this part of the picture
    static constexpr int kTrustedPageConfidence = 80; // Tesseract's mean word confidence to keep its reading
    static constexpr float kMinLineConfidence = 0.5f;
    static constexpr int kMaxLines = 80;

private:
    TextRecognition readLines(const QImage& image);
    std::unique_ptr<detail::PaddleOcr> m_lines;
    TesseractTextRecognizer* pages();
    PageReaderFactory m_makePages;
    std::unique_ptr<TesseractTextRecognizer> m_pages;
    bool m_pagesMade = false;
};

} // namespace lumaro::platform
