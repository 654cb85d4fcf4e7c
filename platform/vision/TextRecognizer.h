// SPDX-License-Identifier: GPL-3.0-or-later
// Text recognition in a picture: one best candidate per recognised line.
#pragma once

#include <QImage>
#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>

#include <memory>

namespace lumaro::platform {

struct TextRecognition
{
    QStringList lines;      // top to bottom, each trimmed and non-empty
    QString error;          // empty on success
    double textShare = 0.0; // part of the picture covered by text lines, 0..1 (0 when the reader cannot tell)
    QList<QRect> boxes; // each line's bounds in the picture, in the order of `lines`; empty when the reader
                        // cannot tell
    // Per line, how sure the reader is of each character (0..1), one per UTF-16 unit of the line; empty when
    // the reader cannot tell.
    QList<QList<float>> characterConfidences;
};

// One recogniser per thread, initialised once (loading the language data is the slow part).
class TextRecognizer
{
public:
    virtual ~TextRecognizer() = default;
    virtual TextRecognition recognize(const QImage& image) = 0;
    // `image` read as one line, without looking for lines in it: for a line whose box the caller has already
    // found and padded itself (a box cut tight at the baseline loses a "_"). By default, `recognize`.
    virtual TextRecognition readLine(const QImage& image) { return recognize(image); }
};

// The best reader the installed models allow: PP-OCR finds the lines (photographed, tilted, Chinese) and
// reads them, Tesseract reads clean pages after levelling them; either alone when the other is missing;
// nullptr when neither is available (logged once).
std::unique_ptr<TextRecognizer> makeTextRecognizer();
// PP-OCR alone, every line read as a line and its box given: for small text in a part of a picture (a stamp
// in a corner), where a page reader would take the picture's other text for a page and miss the small line.
// nullptr when its models are not installed (logged once).
std::unique_ptr<TextRecognizer> makeLineTextRecognizer();

// Spaces a reader puts between Chinese characters, or around Chinese punctuation, are not in the text
// ("讨论 ， 成员们" → "讨论，成员们"), and ASCII marks after Chinese are the Chinese ones ("时间 : 九点" →
// "时间：九点"); spaces and marks between Latin words stay.
QString withoutCjkSpacing(const QString& line);

} // namespace lumaro::platform
