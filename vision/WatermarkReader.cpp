// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/WatermarkReader.h"

#include "platform/vision/LocalContrast.h"
#include "platform/vision/TextRecognizer.h"

#include <QSet>

#include <algorithm>
#include <cmath>

namespace lumaro::vision {

struct WatermarkReader::Candidate
{
    WatermarkIdentifier identifier;
    int regions = 0;
    QRect firstRegion;
    bool enhanced = false; // read off the contrast-raised copy
};

namespace {

// The line reader's detector looks at a strip as 1920 × 320; a region is scaled to fill that.
constexpr int kDetectorLong = 1920;
constexpr int kDetectorShort = 320;

double enlargementFor(QSize region)
{
    const double fit = std::min(double(kDetectorLong) / std::max(1, region.width()),
                                double(kDetectorShort) / std::max(1, region.height()));
    return std::clamp(fit, 1.0, WatermarkReader::kMaxEnlargement);
}

using Candidate = WatermarkReader::Candidate;

// A region cut out and enlarged `scale` times for the line reader.
QImage enlargedRegion(const QImage& picture, const QRect& region, double scale)
{
    return picture.copy(region).scaled(region.size() * scale, Qt::IgnoreAspectRatio,
                                       Qt::SmoothTransformation);
}

// Whether a line's box (in the enlarged region's pixels) reaches an edge of the region that is not an edge of
// the picture: the stamp goes on past it, so the line is only part of it ("@小鹿" of "@小鹿摄影"), and the
// overlapping neighbour region holds it whole.
bool isCutByRegion(const QRect& box, const QRect& region, QSize picture, QSize enlarged)
{
    const int slack = std::max(2, enlarged.height() / 100);
    const bool left = region.left() > 0 && box.left() <= slack;
    const bool right = region.right() < picture.width() - 1 && box.right() >= enlarged.width() - 1 - slack;
    const bool top = region.top() > 0 && box.top() <= slack;
    const bool bottom =
        region.bottom() < picture.height() - 1 && box.bottom() >= enlarged.height() - 1 - slack;
    return left || right || top || bottom;
}

bool isBetter(const Candidate& a, const Candidate& b)
{
    if (a.regions != b.regions)
        return a.regions > b.regions;
    return a.identifier.kind == WatermarkIdentifier::Kind::number &&
           b.identifier.kind != WatermarkIdentifier::Kind::number;
}

// The reader's least sure character of the identifier in `line` (the "@" and an ID line's key left out: they
// name no poster); 1 when the reader cannot tell.
float weakestCharacter(const QString& line, const QList<float>& confidences, const WatermarkIdentifier& found)
{
    if (confidences.size() != line.size())
        return 1.f;
    const QString name =
        found.kind == WatermarkIdentifier::Kind::handle ? found.identifier.mid(1) : found.identifier;
    const QString folded = line.normalized(QString::NormalizationForm_KC).toLower();
    const qsizetype at = folded.size() == line.size() ? folded.lastIndexOf(name) : -1;
    const qsizetype from = at < 0 ? 0 : at, to = at < 0 ? line.size() : at + name.size();
    float weakest = 1.f;
    for (qsizetype i = from; i < to; ++i)
        weakest = std::min(weakest, confidences[i]);
    return weakest;
}

// `surest`: the least a character of an identifier must be read with to be taken.
void collect(const platform::TextRecognition& text, const QRect& region, QSize picture, QSize enlarged,
             bool enhanced, float surest, QList<Candidate>& candidates)
{
    QSet<QString> seenHere;
    for (qsizetype i = 0; i < text.lines.size(); ++i) {
        if (i < text.boxes.size() && isCutByRegion(text.boxes[i], region, picture, enlarged))
            continue;
        const std::optional<WatermarkIdentifier> found = WatermarkIdentifier::find(text.lines[i]);
        if (!found || seenHere.contains(found->identifier))
            continue;
        const QList<float> confidences = text.characterConfidences.value(i);
        if (weakestCharacter(text.lines[i], confidences, *found) < surest)
            continue;
        seenHere.insert(found->identifier);
        const auto same = std::find_if(candidates.begin(), candidates.end(), [&](const Candidate& c) {
            return c.identifier.identifier == found->identifier;
        });
        if (same != candidates.end())
            ++same->regions;
        else
            candidates << Candidate{*found, 1, region, enhanced};
    }
}

} // namespace

WatermarkReader::WatermarkReader(std::unique_ptr<platform::TextRecognizer> recognizer, Enhancer enhance)
    : m_recognizer(std::move(recognizer)), m_enhance(std::move(enhance))
{
}

WatermarkReader::~WatermarkReader() = default;

QList<QRect> WatermarkReader::regionsOf(QSize picture)
{
    const int w = picture.width(), h = picture.height();
    const int rh = std::max(1, int(std::lround(h * kRegionHeight)));
    return {QRect(0, 0, w, rh), QRect(0, h - rh, w, rh)};
}

WatermarkReading WatermarkReader::read(const QImage& upright)
{
    WatermarkReading reading;
    if (!m_recognizer || upright.isNull()) {
        reading.error = m_recognizer ? QStringLiteral("空图像") : QStringLiteral("文字识别不可用");
        return reading;
    }
    QList<Candidate> candidates;
    int failedRegions = 0;
    const QList<QRect> regions = regionsOf(upright.size());
    for (const bool enhanced : {false, true}) {
        // Light text on a light background (white stamps over sky or a white wall) is read again with its
        // local contrast raised; a picture whose stamp was read plainly costs nothing more.
        if (enhanced && !candidates.isEmpty())
            break;
        for (const QRect& region : regions) {
            const QImage source = prepared(upright, region, enlargementFor(region.size()), enhanced);
            const platform::TextRecognition text = m_recognizer->recognize(source);
            if (!text.error.isEmpty()) {
                ++failedRegions;
                reading.error = text.error;
                continue;
            }
            reading.lines << text.lines;
            collect(text, region, upright.size(), source.size(), enhanced, kMinCharacterConfidence,
                    candidates);
        }
    }
    if (failedRegions < 2 * regions.size())
        reading.error.clear();
    if (candidates.isEmpty())
        return reading;
    const Candidate& best = *std::min_element(candidates.begin(), candidates.end(), isBetter);
    if (best.regions >= 2 || isConfirmed(upright, best))
        reading.found = best.identifier;
    return reading;
}

QImage WatermarkReader::defaultEnhancer(const QImage& region)
{
    return platform::withLocalContrast(region);
}

QImage WatermarkReader::prepared(const QImage& upright, const QRect& region, double scale,
                                 bool enhanced) const
{
    const QImage enlarged = enlargedRegion(upright, region, scale);
    return enhanced && m_enhance ? m_enhance(enlarged) : enlarged;
}

bool WatermarkReader::isConfirmed(const QImage& upright, const Candidate& candidate)
{
    const QRect& region = candidate.firstRegion;
    const double scale = enlargementFor(region.size()) * kConfirmationScale;
    const QImage source = prepared(upright, region, scale, candidate.enhanced);
    // The first reading was sure of every character; this one has only to say the same.
    QList<Candidate> again;
    collect(m_recognizer->recognize(source), region, upright.size(), source.size(), candidate.enhanced, 0.f,
            again);
    return std::any_of(again.begin(), again.end(), [&](const Candidate& c) {
        return c.identifier.identifier == candidate.identifier.identifier;
    });
}

} // namespace lumaro::vision
