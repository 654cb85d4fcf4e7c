// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/WatermarkReader.h"

#include "platform/vision/LocalContrast.h"
#include "platform/vision/TextRecognizer.h"

#include <QRegularExpression>
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
    QRectF line;           // the line it was read from, in the picture's pixels; empty when not known
    bool onlyUnderscoresUnsure = false; // read unsure of no character of the identifier but its "_"
    bool bare = false;     // a Chinese name or an account read alone: its "@" or key may have been dropped
    bool markSure = false; // read sure of its "@" (a handle) or its key (an ID line)
    QString read;          // the whole line as read, and how sure the reader was of each of its characters
    QList<float> sureness;
};

// One reading of one region: the identifiers read sure of every character, and the lines that may be a
// stamp but were not read sure enough.
struct WatermarkReader::RegionReading
{
    QList<Candidate> sure;
    QList<Candidate> doubtful; // identifier empty when the line held none
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

// The characters of the identifier in `line` the reader gave less than `surest` (the "@" and an ID line's key
// left out); none when the reader cannot tell.
QString unsureCharacters(const QString& line, const QList<float>& confidences,
                         const WatermarkIdentifier& found, float surest)
{
    if (confidences.size() != line.size())
        return {};
    const QString name =
        found.kind == WatermarkIdentifier::Kind::handle ? found.identifier.mid(1) : found.identifier;
    const QString folded = line.normalized(QString::NormalizationForm_KC).toLower();
    const qsizetype at = folded.size() == line.size() ? folded.lastIndexOf(name) : -1;
    const qsizetype from = at < 0 ? 0 : at, to = at < 0 ? line.size() : at + name.size();
    QString unsure;
    for (qsizetype i = from; i < to; ++i)
        if (confidences[i] < surest)
            unsure += line[i];
    return unsure;
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

// A line's box in the enlarged region mapped back to the picture's pixels.
QRectF inPicture(const QRect& box, const QRect& region, QSize enlarged)
{
    const double sx = double(enlarged.width()) / std::max(1, region.width());
    const double sy = double(enlarged.height()) / std::max(1, region.height());
    return QRectF(region.left() + box.left() / sx, region.top() + box.top() / sy, box.width() / sx,
                  box.height() / sy);
}

// Whether a line the reader was unsure of may still be a stamp worth a closer look: an identifier with an
// unsure character, or a line with an "@" or an ID key whose identifier the pattern did not take ("@光影
// Studio", its "_" seen as a space).
bool mayBeStamp(const QString& line)
{
    const QString text = line.normalized(QString::NormalizationForm_KC);
    return text.contains(QLatin1Char('@')) || text.contains(QLatin1String("ID")) ||
           text.contains(QStringLiteral("号"));
}

// Whether a line is a name or an account alone: a Chinese handle whose "@" the reader dropped, or an ID line
// whose key it dropped (a small "@" or "号：" in a CJK font stands light and close to what follows it:
// "南山南" of "@南山南", "40918273" of "号：40918273"). Latin words alone are signs and captions far more
// often than stamps, and are left alone.
bool mayBeBareName(const QString& line)
{
    static const QRegularExpression name(QStringLiteral("^[\\p{L}\\p{N}_.\\-]{2,30}$"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    static const QRegularExpression han(QStringLiteral("\\p{Han}"),
                                        QRegularExpression::UseUnicodePropertiesOption);
    static const QRegularExpression account(
        QStringLiteral("^(?=[A-Za-z_.\\-]*[0-9])[A-Za-z0-9_.\\-]{4,24}$"));
    const QString text = line.normalized(QString::NormalizationForm_KC);
    return (name.match(text).hasMatch() && han.match(text).hasMatch()) || account.match(text).hasMatch();
}

// Whether the reader was sure of what makes `found` an identifier in `line`: a handle's "@", the last
// character of an ID line's key ("D" of "ID", "号").
bool markReadSure(const QString& line, const QList<float>& confidences, const WatermarkIdentifier& found,
                  float surest)
{
    const QString text = line.normalized(QString::NormalizationForm_KC);
    if (confidences.size() != line.size() || text.size() != line.size())
        return false;
    qsizetype at = -1;
    if (found.kind == WatermarkIdentifier::Kind::handle) {
        at = text.indexOf(QLatin1Char('@'));
    } else {
        at = text.toLower().lastIndexOf(found.identifier) - 1;
        while (at >= 0 && (text[at].isSpace() || text[at] == QLatin1Char(':')))
            --at;
    }
    return at >= 0 && confidences[at] >= surest;
}

using RegionReading = WatermarkReader::RegionReading;

// `surest`: the least a character of an identifier must be read with to be taken.
RegionReading collect(const platform::TextRecognition& text, const QRect& region, QSize picture,
                      QSize enlarged, bool enhanced, float surest)
{
    RegionReading out;
    QSet<QString> seenHere;
    for (qsizetype i = 0; i < text.lines.size(); ++i) {
        const bool boxed = i < text.boxes.size();
        if (boxed && isCutByRegion(text.boxes[i], region, picture, enlarged))
            continue;
        const QRectF line = boxed ? inPicture(text.boxes[i], region, enlarged) : QRectF();
        const std::optional<WatermarkIdentifier> found = WatermarkIdentifier::find(text.lines[i]);
        const QList<float> confidences = text.characterConfidences.value(i);
        if (!found || weakestCharacter(text.lines[i], confidences, *found) < surest) {
            const bool bare = !found && mayBeBareName(text.lines[i]);
            if (mayBeStamp(text.lines[i]) || bare) {
                Candidate doubtful{found.value_or(WatermarkIdentifier{}), 1, region, enhanced, line};
                doubtful.read = text.lines[i];
                doubtful.sureness = confidences;
                if (!found) // kept to tell what this reading saw of the line ("@秋水 Photo")
                    doubtful.identifier.text = text.lines[i];
                doubtful.bare = bare;
                if (found) {
                    const QString unsure = unsureCharacters(text.lines[i], confidences, *found, surest);
                    doubtful.onlyUnderscoresUnsure =
                        !unsure.isEmpty() && unsure.count(QLatin1Char('_')) == unsure.size();
                }
                out.doubtful << doubtful;
            }
            continue;
        }
        if (seenHere.contains(found->identifier))
            continue;
        seenHere.insert(found->identifier);
        Candidate sure{*found, 1, region, enhanced, line};
        sure.read = text.lines[i];
        sure.sureness = confidences;
        sure.markSure = markReadSure(text.lines[i], confidences, *found, surest);
        out.sure << sure;
    }
    return out;
}

// Adds `reading` to `candidates`: an identifier read in another region counts once more.
void merge(const QList<Candidate>& reading, QList<Candidate>& candidates)
{
    for (const Candidate& found : reading) {
        const auto same = std::find_if(candidates.begin(), candidates.end(), [&](const Candidate& c) {
            return c.identifier.identifier == found.identifier.identifier;
        });
        if (same != candidates.end())
            ++same->regions;
        else
            candidates << found;
    }
}

// Whether `longer` is `shorter` with the characters the first reading dropped put back: the end its box cut
// off ("@marco" of "@marco_v", "630182" of "63018274") or a "_" or "." it did not see ("@光影studio").
bool restores(const WatermarkIdentifier& longer, const WatermarkIdentifier& shorter)
{
    if (longer.kind != shorter.kind || longer.identifier.size() <= shorter.identifier.size())
        return false;
    const QString& a = longer.identifier;
    const QString& b = shorter.identifier;
    qsizetype i = 0, j = 0;
    for (; j < b.size(); ++i) {
        if (i == a.size())
            return false;
        if (a[i] == b[j])
            ++j;
        else if (!QStringLiteral("_.-").contains(a[i]))
            return false;
    }
    return true;
}

// Whether a line ends with an ID line's key and no account after it ("ID:", "抖音号：").
bool endsWithKey(const QString& line)
{
    static const QRegularExpression key(QStringLiteral("(?:(?<![A-Za-z])U?I[Dd]|号)\\s*:?$"));
    return key.match(line.normalized(QString::NormalizationForm_KC).trimmed()).hasMatch();
}

// The line after `first` on the same text line, close enough to be the rest of the same stamp: the detector
// splits a line where a "_" leaves a gap between letters ("@光影" "Studio"). -1 when none.
qsizetype restOfLine(const platform::TextRecognition& text, qsizetype first)
{
    const QRect& a = text.boxes[first];
    // Seen large, the detector also splits an ID line at the space after its key ("ID:" "1029384756").
    const double widest = endsWithKey(text.lines[first]) ? 2.0 : 0.8;
    for (qsizetype j = 0; j < text.boxes.size() && j < text.lines.size(); ++j) {
        const QRect& b = text.boxes[j];
        const int overlap = std::min(a.bottom(), b.bottom()) - std::max(a.top(), b.top());
        const int gap = b.left() - a.right();
        if (j != first && overlap >= 0.6 * std::min(a.height(), b.height()) && gap >= -a.height() / 2 &&
            gap <= widest * std::max(a.height(), b.height()))
            return j;
    }
    return -1;
}

// Whether `line` holds an identifier read sure of every character.
bool readSure(const QString& line, const QList<float>& confidences)
{
    const std::optional<WatermarkIdentifier> found = WatermarkIdentifier::find(line);
    return found && weakestCharacter(line, confidences, *found) >= WatermarkReader::kMinCharacterConfidence;
}

QString identifierIn(const QString& line)
{
    const std::optional<WatermarkIdentifier> found = WatermarkIdentifier::find(line);
    return found ? found->identifier : QString();
}

// The lines of `text` that may be a stamp read again as lines of their own, their boxes padded (and joined
// with the rest of their line): the detector's box hugs the letters, and a "_" under the baseline or a
// character standing apart at the end falls outside it. The padding leaves the letters smaller, though, and
// a small stamp's "." or "i" is then lost: a line the detector's reading was sure of, that the padded one
// reads otherwise and unsure, keeps the detector's reading, and the padded one goes to `unadopted` (a look
// at the line all the same, that must agree with it). The same identifier read unsure keeps its doubt: the
// padded reading may have seen a "_" there that the detector's did not ("@光影Studio" of "@光影_Studio").
void readPadded(platform::TextRecognizer& reader, const QImage& source, platform::TextRecognition& text,
                platform::TextRecognition& unadopted)
{
    for (qsizetype i = 0; i < text.lines.size() && i < text.boxes.size(); ++i) {
        const bool stamp = mayBeStamp(text.lines[i]) || WatermarkIdentifier::find(text.lines[i]);
        const bool bare = !stamp && mayBeBareName(text.lines[i]);
        if (!stamp && !bare)
            continue;
        const qsizetype rest = restOfLine(text, i);
        const QRect box = rest < 0 ? text.boxes[i] : text.boxes[i].united(text.boxes[rest]);
        const int pad = std::max(2, box.height() / 4);
        // A name or account alone is read again with room before it for the "@" or key the detector left
        // out of its box ("号" set apart by a full-width colon), and taken so only when that is read sure.
        const int before = bare ? 2 * box.height() : pad;
        const platform::TextRecognition again =
            reader.readLine(source.copy(box.adjusted(-before, -pad, pad, pad) & source.rect()));
        if (!again.error.isEmpty() || again.lines.size() != 1)
            continue;
        if (bare) {
            const std::optional<WatermarkIdentifier> found = WatermarkIdentifier::find(again.lines[0]);
            if (!found || !markReadSure(again.lines[0], again.characterConfidences.value(0), *found,
                                        WatermarkReader::kMinCharacterConfidence))
                continue;
        }
        if (readSure(text.lines[i], text.characterConfidences.value(i)) &&
            !readSure(again.lines[0], again.characterConfidences.value(0)) &&
            identifierIn(again.lines[0]) != identifierIn(text.lines[i])) {
            unadopted.lines << again.lines[0];
            unadopted.boxes << box;
            unadopted.characterConfidences << again.characterConfidences.value(0);
            continue;
        }
        text.lines[i] = again.lines[0];
        text.boxes[i] = box;
        if (i < text.characterConfidences.size())
            text.characterConfidences[i] = again.characterConfidences.value(0);
        if (rest >= 0) {
            text.lines.removeAt(rest);
            text.boxes.removeAt(rest);
            if (rest < text.characterConfidences.size())
                text.characterConfidences.removeAt(rest);
            if (rest < i)
                --i;
        }
    }
}

// Whether no line of `reading` holds an identifier other than a part of `identifier`.
bool onlyPartsOf(const RegionReading& reading, const QString& identifier)
{
    const auto part = [&](const Candidate& c) { return identifier.contains(c.identifier.identifier); };
    return std::all_of(reading.sure.begin(), reading.sure.end(), part) &&
           std::all_of(reading.doubtful.begin(), reading.doubtful.end(), part);
}

// Whether two boxes are the same line read twice: they share most of the smaller one.
bool sameLine(const QRectF& a, const QRectF& b)
{
    if (a.isEmpty() || b.isEmpty())
        return false;
    const QRectF shared = a.intersected(b);
    const double smaller = std::min(a.width() * a.height(), b.width() * b.height());
    return shared.width() * shared.height() >= 0.5 * smaller;
}

// Whether `line` holds `name` with a space inside it: the reader saw a gap there, where a "_" or a "." stands
// that a reading of `name` left out ("@秋水 Photo" of "@秋水_Photo" against "@秋水photo").
bool splitBySpace(const QString& line, const QString& name)
{
    const QString text = line.normalized(QString::NormalizationForm_KC).toLower();
    QString joined = text;
    joined.remove(QLatin1Char(' '));
    return !text.contains(name) && joined.contains(name);
}

// Most characters another reading of a line may have left out where it was unsure.
constexpr int kMaxLostUnsure = 2;

// Whether `other`, a reading of the line `taken` was read from, is `taken` with characters left out beside
// ones it was unsure of ("@jin.li.flm" of "@jin.li.film", its small "i" lost): such a reading saw less, not
// something else. A character it read otherwise is something else however unsure it was of it: the reader
// is sometimes sure of a misread (目 for 日) where another reading was unsure of the right character. So is
// a character it saw that `taken` lacks ("@秋水_photo" against "@秋水photo").
bool lostOnlyWhereUnsure(const Candidate& other, const WatermarkIdentifier& taken, float surest)
{
    if (other.identifier.kind != taken.kind || other.identifier.identifier.isEmpty())
        return false;
    const auto nameOf = [](const WatermarkIdentifier& id) {
        return id.kind == WatermarkIdentifier::Kind::handle ? id.identifier.mid(1) : id.identifier;
    };
    const QString read = nameOf(other.identifier), name = nameOf(taken);
    const QString folded = other.read.normalized(QString::NormalizationForm_KC).toLower();
    if (other.sureness.size() != other.read.size() || folded.size() != other.read.size())
        return false;
    const qsizetype at = folded.lastIndexOf(read);
    if (at < 0)
        return false;
    const auto unsure = [&](qsizetype i) {
        return i >= 0 && i < read.size() && other.sureness[at + i] < surest;
    };
    // Fewest characters of `name` left out to make `read`, each beside an unsure one; kNever where none do.
    constexpr int kNever = 1 << 20;
    const qsizetype n = read.size(), m = name.size();
    QList<int> cost((n + 1) * (m + 1), kNever);
    const auto fewest = [&](qsizetype i, qsizetype j) -> int& { return cost[i * (m + 1) + j]; };
    fewest(0, 0) = 0;
    for (qsizetype i = 0; i <= n; ++i) {
        for (qsizetype j = 0; j <= m; ++j) {
            int& here = fewest(i, j);
            if (i > 0 && j > 0 && read[i - 1] == name[j - 1])
                here = std::min(here, fewest(i - 1, j - 1));
            if (j > 0 && (unsure(i - 1) || unsure(i)))
                here = std::min(here, fewest(i, j - 1) + 1);
        }
    }
    return fewest(n, m) <= kMaxLostUnsure;
}

// Letters standing fewer grey levels than this off their ground are not seen by a person or the reader.
constexpr int kUnseenStep = 12;

// The grey levels of `area` of `picture`, sorted.
QList<int> greysOf(const QImage& picture, const QRect& area)
{
    QList<int> greys;
    greys.reserve(qsizetype(area.width()) * area.height());
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        for (int x = area.left(); x <= area.right(); ++x)
            greys << qGray(row[x]);
    }
    std::sort(greys.begin(), greys.end());
    return greys;
}

// Whether more of a line's stamp could stand right after it unseen: a stamp whose end runs onto a ground
// as light as its letters may go on there ("ID: 630182" of "ID: 63018274", its "74" white on a white wall),
// and what was read is only its first part. Platforms stamp white (or black) letters at some opacity; how
// opaque they are is told by how far the letters stand off the line's own ground, and from that how far
// they would stand off the ground after the line.
bool mayGoOnUnseen(const QImage& upright, const QRectF& line)
{
    const QRect box = line.toAlignedRect() & upright.rect();
    if (box.width() < 2 || box.height() < 2)
        return false;
    const int h = box.height();
    const QRect after =
        QRect(box.right() + 1, box.top() + h / 4, h * 3 / 2, std::max(1, h / 2)) & upright.rect();
    if (after.width() < h / 2) // the picture ends there
        return false;
    const QImage rgb = upright.format() == QImage::Format_RGB32 || upright.format() == QImage::Format_ARGB32
                           ? upright
                           : upright.convertToFormat(QImage::Format_RGB32);
    const QList<int> tones = greysOf(rgb, box);
    const double low = tones[tones.size() * 3 / 100], middle = tones[tones.size() / 2],
                 high = tones[tones.size() * 97 / 100];
    if (high - low < kUnseenStep) // no letters to tell the stamp's tone by
        return false;
    const QList<int> beyond = greysOf(rgb, after);
    const double ground = beyond[beyond.size() / 2];
    // The letters are the tone standing farther off the line's middle one, its ground.
    const bool light = high - middle >= middle - low;
    const double opacity =
        light ? (high - middle) / std::max(1.0, 255 - middle) : (middle - low) / std::max(1.0, middle);
    const double step = std::min(1.0, opacity) * (light ? 255 - ground : ground);
    return step < kUnseenStep;
}

} // namespace

WatermarkReader::RegionReading WatermarkReader::collected(const platform::TextRecognition& text,
                                                          const QRect& region, QSize picture, QSize enlarged,
                                                          bool enhanced, float surest)
{
    RegionReading reading = collect(text, region, picture, enlarged, enhanced, surest);
    for (const QList<Candidate>* found : {&reading.sure, &reading.doubtful})
        for (const Candidate& c : *found)
            if (!c.line.isEmpty() && !(c.identifier.identifier.isEmpty() && c.identifier.text.isEmpty()))
                m_seen << c;
    return reading;
}

void WatermarkReader::readPaddedRemembering(const QImage& source, const QRect& region, QSize picture,
                                            bool enhanced, platform::TextRecognition& text)
{
    // The detector's own reading of a line is a look at it too: the padded one may leave out what it saw
    // ("@秋水_Photo" read "@秋水Photo"), and an identifier two looks read otherwise is not taken.
    const platform::TextRecognition detected = text;
    platform::TextRecognition unadopted;
    readPadded(*m_recognizer, source, text, unadopted);
    collected(detected, region, picture, source.size(), enhanced, kMinCharacterConfidence);
    collected(unadopted, region, picture, source.size(), enhanced, kMinCharacterConfidence);
}

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
    QList<Candidate> candidates, doubtful;
    m_seen.clear();
    int failedRegions = 0;
    const QList<QRect> regions = regionsOf(upright.size());
    for (const bool enhanced : {false, true}) {
        // Light text on a light background (white stamps over sky or a white wall) is read again with its
        // local contrast raised; a picture whose stamp was read plainly costs nothing more.
        if (enhanced && !candidates.isEmpty())
            break;
        for (const QRect& region : regions) {
            const QImage source = prepared(upright, region, enlargementFor(region.size()), enhanced);
            platform::TextRecognition text = m_recognizer->recognize(source);
            if (!text.error.isEmpty()) {
                ++failedRegions;
                reading.error = text.error;
                continue;
            }
            readPaddedRemembering(source, region, upright.size(), enhanced, text);
            reading.lines << text.lines;
            RegionReading found =
                collected(text, region, upright.size(), source.size(), enhanced, kMinCharacterConfidence);
            merge(found.sure, candidates);
            doubtful << found.doubtful;
        }
    }
    if (failedRegions < 2 * regions.size())
        reading.error.clear();
    std::optional<Candidate> taken;
    if (!candidates.isEmpty()) {
        const Candidate& best = *std::min_element(candidates.begin(), candidates.end(), isBetter);
        taken = best.regions >= 2 ? std::optional(best) : confirmed(upright, best);
    }
    // A line read sure that a closer look did not read the same (a sign, a texture taken for letters) is no
    // reason to leave the lines read unsure unlooked at: the stamp may be one of them.
    if (!taken)
        taken = closerLook(upright, doubtful);
    // A picture sorted to the wrong poster is worse than one left where it is: an identifier some reading
    // of its line read otherwise, or whose end may go on unseen, is not taken.
    if (taken && agreed(*taken) && !mayGoOnUnseen(upright, taken->line))
        reading.found = taken->identifier;
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

namespace {

// The second look at a line: its box widened (more after it than before: a box cut short loses the end of
// the stamp, where a "_" or a digit stood apart) and taller (the "_" under the baseline), enlarged until the
// line is as tall as `lineHeight`. The two looks differ in both, so a misread of one rarely repeats.
struct LineLook
{
    double before, after, around; // in line heights
    double lineHeight;            // pixels
};
constexpr LineLook kLooks[] = {{1.5, 5.0, 0.75, 64.0}, {2.5, 7.0, 1.25, 96.0}};

// Whether `reading` holds `identifier` read sure of every character but maybe its "_".
bool holdsUnderscored(const RegionReading& reading, const QString& identifier)
{
    const auto same = [&](const Candidate& c) { return c.identifier.identifier == identifier; };
    return std::any_of(reading.sure.begin(), reading.sure.end(), same) ||
           std::any_of(reading.doubtful.begin(), reading.doubtful.end(),
                       [&](const Candidate& c) { return same(c) && c.onlyUnderscoresUnsure; });
}

bool holds(const RegionReading& reading, const QString& identifier)
{
    const auto same = [&](const Candidate& c) { return c.identifier.identifier == identifier; };
    return std::any_of(reading.sure.begin(), reading.sure.end(), same) ||
           std::any_of(reading.doubtful.begin(), reading.doubtful.end(), same);
}

} // namespace

WatermarkReader::RegionReading WatermarkReader::lookAt(const QImage& upright, const Candidate& at, int look)
{
    const LineLook& how = kLooks[look];
    const QRectF& line = at.line;
    const double h = std::max(1.0, line.height());
    const QRect region =
        line.adjusted(-how.before * h, -how.around * h, how.after * h, how.around * h).toAlignedRect() &
        upright.rect();
    const double scale = std::clamp(how.lineHeight / h, 1.0, kMaxEnlargement);
    const QImage source = prepared(upright, region, scale, at.enhanced);
    platform::TextRecognition text = m_recognizer->recognize(source);
    readPaddedRemembering(source, region, upright.size(), at.enhanced, text);
    return collected(text, region, upright.size(), source.size(), at.enhanced, kMinCharacterConfidence);
}

bool WatermarkReader::bandConfirms(const QImage& upright, const Candidate& best)
{
    const QRect& region = best.firstRegion;
    const QImage source =
        prepared(upright, region, enlargementFor(region.size()) * kConfirmationScale, best.enhanced);
    return holds(
        collected(m_recognizer->recognize(source), region, upright.size(), source.size(), best.enhanced, 0.f),
        best.identifier.identifier);
}

std::optional<WatermarkReader::Candidate> WatermarkReader::confirmed(const QImage& upright,
                                                                     const Candidate& best)
{
    // No box to look at closer: the whole band again at another enlargement.
    if (best.line.isEmpty())
        return bandConfirms(upright, best) ? std::optional(best) : std::nullopt;
    const RegionReading first = lookAt(upright, best, 0);
    // A longer identifier read sure where the short one was: the short one was the first part of the stamp,
    // and the long one must be read the same at the second look too.
    for (const Candidate& longer : first.sure)
        if (restores(longer.identifier, best.identifier))
            return holds(lookAt(upright, best, 1), longer.identifier.identifier) ? std::optional(longer)
                                                                                 : std::nullopt;
    // The first reading was sure of every character; this one has only to say the same. A closer look that
    // read no other identifier there (no line at all: the detector misses a line it sees large that it
    // found small; only a part of it, its crop cutting the line; a "_" seen as a space) says nothing either
    // way: the band is read again instead.
    if (holds(first, best.identifier.identifier) ||
        (onlyPartsOf(first, best.identifier.identifier) && bandConfirms(upright, best)))
        return best;
    return std::nullopt;
}

std::optional<WatermarkReader::Candidate> WatermarkReader::closerLook(const QImage& upright,
                                                                      const QList<Candidate>& doubtful)
{
    // Lines with an "@" or an ID key first: a name or an account alone is a stamp less often than they are.
    QList<Candidate> lines = doubtful;
    std::stable_partition(lines.begin(), lines.end(), [](const Candidate& c) { return !c.bare; });
    QList<QRectF> looked;
    for (const Candidate& line : lines) {
        if (line.line.isEmpty() || looked.size() >= kMaxCloserLooks ||
            std::any_of(looked.begin(), looked.end(),
                        [&](const QRectF& r) { return r.intersects(line.line); }))
            continue;
        looked << line.line;
        const RegionReading first = lookAt(upright, line, 0);
        // A name or account read alone is an identifier only when both closer looks read its "@" or key too,
        // sure of it.
        if (line.bare) {
            if (first.sure.size() != 1 || !first.sure[0].markSure)
                continue;
            const RegionReading second = lookAt(upright, line, 1);
            const QString& name = first.sure[0].identifier.identifier;
            if (std::any_of(second.sure.begin(), second.sure.end(), [&](const Candidate& c) {
                    return c.identifier.identifier == name && c.markSure;
                }))
                return first.sure[0];
            continue;
        }
        // One identifier read sure of every character, read the same again at the second look.
        if (first.sure.size() == 1 && holds(lookAt(upright, line, 1), first.sure[0].identifier.identifier))
            return first.sure[0];
        // A "_" is a thin low stroke the reader is seldom sure of: a line whose "_" alone was read unsure is
        // taken when both closer looks read the same, sure of every other character.
        const QString& name = line.identifier.identifier;
        if (line.onlyUnderscoresUnsure && first.sure.isEmpty() && holdsUnderscored(first, name) &&
            holdsUnderscored(lookAt(upright, line, 1), name))
            return line;
    }
    return std::nullopt;
}

bool WatermarkReader::agreed(const Candidate& taken) const
{
    const QString& name = taken.identifier.identifier;
    return std::all_of(m_seen.begin(), m_seen.end(), [&](const Candidate& other) {
        const QString& read = other.identifier.identifier;
        if (!sameLine(taken.line, other.line))
            return true;
        // A reading of the line that held no identifier agrees unless it saw a gap inside this one.
        if (read.isEmpty())
            return !splitBySpace(other.identifier.text, name);
        // This one read again, a part of it cut off by a box, it with a "_" not seen, or it with characters
        // lost where that reading was unsure.
        return read == name || name.contains(read) || restores(taken.identifier, other.identifier) ||
               lostOnlyWhereUnsure(other, taken.identifier, kMinCharacterConfidence);
    });
}

} // namespace lumaro::vision
