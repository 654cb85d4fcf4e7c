// SPDX-License-Identifier: GPL-3.0-or-later
// Reads the identifier a platform stamped on a picture, from its corners and bottom edge enlarged.
#pragma once

#include "vision/WatermarkIdentifier.h"

#include <QImage>
#include <QList>
#include <QRect>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace lumaro::platform {
class TextRecognizer;
struct TextRecognition;
} // namespace lumaro::platform

namespace lumaro::vision {

struct WatermarkReading
{
    std::optional<WatermarkIdentifier> found;
    QStringList lines; // every line read in the regions, region by region
    QString error;     // empty unless the recogniser failed in every region
};

// Not thread-safe: one per worker (it owns its recogniser). Platforms draw their stamp small (1–3 % of the
// picture's height) near a corner or the middle of the bottom edge, so only the bands along the top and
// bottom edges are read, each enlarged until its text is as tall as the line reader wants it; a band spans
// the whole width, so a stamp anywhere along the edge is whole in it. When several identifiers are read, the
// one read in most bands wins; on a tie an ID line beats a handle (the number is the account, the name can
// change). An identifier seen in one band only must be read the same again from that band at another
// enlargement: a misread character rarely repeats at another scale, and a picture sorted to the wrong poster
// is worse than one left where it is. For the same reason an identifier one of whose characters the reader
// was unsure of is not taken at all, but for a "_" read the same by both closer looks. Nor is an identifier
// another reading of its line read otherwise ("@夏日汽水" and "@夏目汽水"; one that only lost characters
// beside ones it was unsure of read less, not otherwise), or one whose line ends onto a ground as light as
// its letters (or as dark), where more of the stamp could go on unseen.
class WatermarkReader
{
public:
    // Raises the local contrast of a region for the second reading; the default is the platform's.
    using Enhancer = std::function<QImage(const QImage&)>;
    explicit WatermarkReader(std::unique_ptr<platform::TextRecognizer> recognizer,
                             Enhancer enhance = &defaultEnhancer);
    ~WatermarkReader();

    WatermarkReading read(const QImage& upright);

    // The regions read, in the picture's pixels: the bands along the top and the bottom edge.
    static QList<QRect> regionsOf(QSize picture);

    static constexpr int kDecodeSide = 2048;      // long side the picture is decoded at
    static constexpr double kRegionHeight = 0.16; // of the picture's height
    static constexpr double kMaxEnlargement = 4.0;
    static constexpr double kConfirmationScale = 1.5;      // the second reading's enlargement over the first
    static constexpr float kMinCharacterConfidence = 0.8f; // of each character of an identifier
    static constexpr int kMaxCloserLooks = 2; // lines read unsure that are looked at closer, a picture

    static QImage defaultEnhancer(const QImage& region);

    struct Candidate;
    struct RegionReading;

private:
    QImage prepared(const QImage& upright, const QRect& region, double scale, bool enhanced) const;
    // The identifier to take for the best candidate read in one band only, after a closer look at its line.
    std::optional<Candidate> confirmed(const QImage& upright, const Candidate& best);
    // The identifier in one of the lines read unsure, when closer looks at it read it sure.
    std::optional<Candidate> closerLook(const QImage& upright, const QList<Candidate>& doubtful);
    // Whether every reading of the line `taken` was read from says the same as it, or less.
    bool agreed(const Candidate& taken) const;
    RegionReading collected(const platform::TextRecognition& text, const QRect& region, QSize picture,
                            QSize enlarged, bool enhanced, float surest);
    // `text` read again padded (readPadded), what it read before remembered among the readings seen.
    void readPaddedRemembering(const QImage& source, const QRect& region, QSize picture, bool enhanced,
                               platform::TextRecognition& text);
    // Whether the band `best` was read in, read again at another enlargement, says the same.
    bool bandConfirms(const QImage& upright, const Candidate& best);
    RegionReading lookAt(const QImage& upright, const Candidate& at, int look);

    std::unique_ptr<platform::TextRecognizer> m_recognizer;
    Enhancer m_enhance;
    QList<Candidate> m_seen; // every identifier read while reading one picture, sure or not
};

} // namespace lumaro::vision
