// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/WatermarkReader.h"

#include "platform/vision/TextRecognizer.h"

#include <QSet>

#include <algorithm>
#include <cmath>

namespace lumaro::vision {

namespace {

// The line reader's detector looks at 960 × 736 at most; a region is scaled to fill that.
constexpr int kDetectorLong = 960;
constexpr int kDetectorShort = 736;

double enlargementFor(QSize region)
{
    const double fit = std::min(double(kDetectorLong) / std::max(1, region.width()),
                                double(kDetectorShort) / std::max(1, region.height()));
    return std::clamp(fit, 1.0, WatermarkReader::kMaxEnlargement);
}

struct Candidate
{
    WatermarkIdentifier identifier;
    int regions = 0;
    QRect firstRegion;
};

// A region cut out and enlarged `scale` times for the line reader.
QImage enlargedRegion(const QImage& picture, const QRect& region, double scale)
{
    return picture.copy(region).scaled(region.size() * scale, Qt::IgnoreAspectRatio,
                                       Qt::SmoothTransformation);
}

bool isBetter(const Candidate& a, const Candidate& b)
{
    if (a.regions != b.regions)
        return a.regions > b.regions;
    return a.identifier.kind == WatermarkIdentifier::Kind::number &&
           b.identifier.kind != WatermarkIdentifier::Kind::number;
}

} // namespace

WatermarkReader::WatermarkReader(std::unique_ptr<platform::TextRecognizer> recognizer)
    : m_recognizer(std::move(recognizer))
{
}

WatermarkReader::~WatermarkReader() = default;

QList<QRect> WatermarkReader::regionsOf(QSize picture)
{
    const int w = picture.width(), h = picture.height();
    const int rw = std::max(1, int(std::lround(w * kRegionWidth)));
    const int rh = std::max(1, int(std::lround(h * kRegionHeight)));
    return {QRect(0, 0, rw, rh), QRect(w - rw, 0, rw, rh), QRect(0, h - rh, rw, rh),
            QRect(w - rw, h - rh, rw, rh), QRect((w - rw) / 2, h - rh, rw, rh)};
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
    for (const QRect& region : regions) {
        const platform::TextRecognition text =
            m_recognizer->recognize(enlargedRegion(upright, region, enlargementFor(region.size())));
        if (!text.error.isEmpty()) {
            ++failedRegions;
            reading.error = text.error;
            continue;
        }
        QSet<QString> seenHere;
        for (const QString& line : text.lines) {
            reading.lines << line;
            const std::optional<WatermarkIdentifier> found = WatermarkIdentifier::find(line);
            if (!found || seenHere.contains(found->identifier))
                continue;
            seenHere.insert(found->identifier);
            const auto same = std::find_if(candidates.begin(), candidates.end(), [&](const Candidate& c) {
                return c.identifier.identifier == found->identifier;
            });
            if (same != candidates.end())
                ++same->regions;
            else
                candidates << Candidate{*found, 1, region};
        }
    }
    if (failedRegions < regions.size())
        reading.error.clear();
    if (candidates.isEmpty())
        return reading;
    const Candidate& best = *std::min_element(candidates.begin(), candidates.end(), isBetter);
    if (best.regions >= 2 || isConfirmed(upright, best.firstRegion, best.identifier.identifier))
        reading.found = best.identifier;
    return reading;
}

bool WatermarkReader::isConfirmed(const QImage& upright, const QRect& region, const QString& identifier)
{
    const double scale = enlargementFor(region.size()) * kConfirmationScale;
    const platform::TextRecognition again = m_recognizer->recognize(enlargedRegion(upright, region, scale));
    return std::any_of(again.lines.begin(), again.lines.end(), [&](const QString& line) {
        const std::optional<WatermarkIdentifier> found = WatermarkIdentifier::find(line);
        return found && found->identifier == identifier;
    });
}

} // namespace lumaro::vision
