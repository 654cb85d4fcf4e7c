// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/PictureLabeler.h"

#include "vision/SceneWordTable.h"
#include "vision/VisionClassificationEngine.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace lumaro::vision {

using platform::SceneObservation;

namespace {

constexpr double kSmallestObject = 0.03; // part of the frame below which an object is only a detail
constexpr double kRoomObject = 0.20;
constexpr double kFlatScreen = 0.30;  // flat share of a screen capture with a common display size
constexpr double kFlatAnySize = 0.45; // …of any size (a window)
constexpr int kScreenTextLines = 3;
constexpr int kScreenColours = 2;         // a window's bars and panels besides its page
constexpr double kScreenTextShare = 0.01; // lines the reader located, not just words it guessed
// Flat colours of a window's title bar, tool bars, panels and page: a drawing's few flat fills seldom come
// with lines of text, a page of paper has its paper alone.
constexpr int kWindowColours = 3;
constexpr int kBrowserTextLines = 2; // a tab's title and an address around whatever the page shows
constexpr int kDarkBackdrop = 64;    // grey level up to which a backdrop is dark
// A JPEG's blocks blur a window's flat bars, so a saved dialog keeps less of them; what ImageNet knows
// of screens (its "web_site" and "menu") together with that much flat says a capture.
constexpr double kFlatJpegWindow = 0.2;
constexpr float kSceneWordSource = 0.45f; // a label this unsure implies no scene
constexpr double kFlatDrawing = 0.2;      // flat share of a drawing made on a computer
// Off its backdrop, a photo cut out onto one plain colour (a toy, an animal for an avatar) is textured
// nearly everywhere; a drawing's fills and strokes on their background leave a good part smooth.
constexpr double kCutOutPhoto = 0.97;
constexpr float kWebSite = 0.5f;      // ImageNet's "web_site" class is screen captures of pages
constexpr float kSureScreen = 0.8f;   // …and this sure of its screen classes needs no flat areas
constexpr float kOpenAirShare = 0.3f; // open-air labels together this sure make an outdoor scene
// A label that would file the picture under a category must be this sure, alone or with the other labels
// of its category: a weak "wooden_spoon", "strainer" or "stone_wall" is the classifier's guess at the
// nearest class it knows, and a single such guess filed food photos under tools and a valley under
// buildings.
constexpr float kCategoryEvidence = 0.5f;
// The classes of one kind (animals, dishes, plants) together this sure name the kind when no single class
// is sure enough to be kept (a dog of an unsure breed, a table of mixed dishes).
constexpr float kKindEvidence = 0.3f;
constexpr float kKeptLabel = 0.2f; // the index keeps only labels surer than this
// A person the object detector alone sees this small a part of the frame is a passer-by in a view of a
// place (tourists at a monument), not what the picture is of.
constexpr double kPasserBy = 0.005;
// A person the object detector alone sees this small before a building ImageNet is sure of is a passer-by
// too: tourists under a city gate are larger specks than at a distant monument, and still not its subject.
constexpr double kPasserByAtBuilding = 0.015;
// A face the person detectors do not confirm is an animal's when ImageNet is this sure of an animal: an
// ape's or a monkey's face is found as readily as a person's. The same holds for a dish: a face in latte
// art or on a plate is a pattern in the food.
constexpr float kAnimalFace = 0.5f;
// Room classes together this sure make an interior (see interiorEvidence).
constexpr float kInteriorShare = 0.3f;
// Building and open-air classes together this sure make a picture of buildings (see builtUpEvidence).
constexpr float kBuiltUpShare = 0.3f;

double areaShare(const QRectF& box, const QSize& frame)
{
    const double area = double(frame.width()) * frame.height();
    return area > 0 ? box.width() * box.height() / area : 0.0;
}

bool faceInside(const PictureSignals& s, const QRectF& personBox)
{
    // Faces are found on the decoded image; person boxes are in the same pixels.
    return std::any_of(s.faces.begin(), s.faces.end(),
                       [&](const platform::FaceBox& face) { return personBox.contains(face.box.center()); });
}

bool objectPersonOverlaps(const PictureSignals& s, const QRectF& personBox)
{
    if (!s.objects)
        return false;
    return std::any_of(s.objects->begin(), s.objects->end(), [&](const platform::DetectedObject& o) {
        return o.label == QLatin1String("person") && o.box.intersects(personBox);
    });
}

float bestObjectPerson(const PictureSignals& s, double smallestShare = 0.0)
{
    float best = 0.f;
    if (s.objects) {
        for (const platform::DetectedObject& o : *s.objects) {
            if (o.label == QLatin1String("person") && areaShare(o.box, s.analysedSize) >= smallestShare)
                best = std::max(best, o.score);
        }
    }
    return best;
}

// How sure ImageNet is, all its classes that `counts` together.
template <typename Counts> float imageNetEvidence(const PictureSignals& s, Counts counts)
{
    float sum = 0.f;
    for (const SceneObservation& o : s.imageNet) {
        if (counts(o))
            sum += o.confidence;
    }
    return sum;
}

// What ImageNet is sure of besides a person's face: animals, whose faces the face detector finds as
// readily, and dishes, whose decorations it takes for faces.
float faceBearerEvidence(const PictureSignals& s)
{
    return imageNetEvidence(s, [](const SceneObservation& o) {
        return o.kind == QLatin1String("animal") || o.kind == QLatin1String("food");
    });
}

float structureEvidence(const PictureSignals& s)
{
    const VisionTagMatcher& matcher = VisionClassificationEngine::shared().matcher;
    return imageNetEvidence(s, [&](const SceneObservation& o) {
        return matcher.categories({o.identifier}).contains(CategoryKey::structure);
    });
}

// ImageNet's classes for a page on a screen and for the displays themselves: a capture of a media centre or
// a desktop spreads over "television", "screen", "monitor" and "scoreboard" as a browser's does over
// "web_site" and "menu".
float screenClassEvidence(const PictureSignals& s)
{
    static const QSet<QString> screens{
        QStringLiteral("web_site"),   QStringLiteral("menu"),       QStringLiteral("screen"),
        QStringLiteral("monitor"),    QStringLiteral("television"), QStringLiteral("desktop_computer"),
        QStringLiteral("scoreboard"),
    };
    return imageNetEvidence(s, [](const SceneObservation& o) { return screens.contains(o.identifier); });
}

bool isTicket(const QStringList& lines)
{
    static const QRegularExpression words(
        QStringLiteral(
            "发票|车票|门票|机票|票据|收据|登机牌|\\bticket\\b|\\breceipt\\b|\\binvoice\\b|boarding pass"),
        QRegularExpression::CaseInsensitiveOption);
    return std::any_of(lines.begin(), lines.end(),
                       [](const QString& line) { return words.match(line).hasMatch(); });
}

// A group of ImageNet classes summed, against the surest label of anything else (ImageNet's other classes and
// the objects the detector finds big enough). ImageNet names what is in a picture one class at a time, so a
// scene spreads itself thinly over many classes where no one is sure, while a thing in it (a bird by a lake,
// a cat on the desk) still gets the most.
struct GroupEvidence
{
    float group = 0.f;
    float bestThing = 0.f;
    bool outweighs(float share) const { return group >= share && group >= bestThing; }
};

template <typename InGroup, typename CountsObject>
GroupEvidence groupEvidence(const PictureSignals& s, InGroup inGroup, CountsObject countsObject)
{
    GroupEvidence e;
    for (const SceneObservation& o : s.imageNet) {
        if (inGroup(o))
            e.group += o.confidence;
        else
            e.bestThing = std::max(e.bestThing, o.confidence);
    }
    if (s.objects) {
        for (const platform::DetectedObject& o : *s.objects) {
            if (!SceneWordTable::isIgnoredObject(o.label) && countsObject(o.label) &&
                areaShare(o.box, s.analysedSize) >= kSmallestObject)
                e.bestThing = std::max(e.bestThing, o.score);
        }
    }
    return e;
}

bool anyObject(const QString&)
{
    return true;
}

// Open-air places and the things seen only there: a forest path or fields spread over "valley", "lakeside",
// "stone_wall", "worm_fence"….
GroupEvidence openAirEvidence(const PictureSignals& s)
{
    return groupEvidence(
        s, [](const SceneObservation& o) { return SceneWordTable::isOpenAir(o.identifier); }, anyObject);
}

// The landforms alone among them.
float landformEvidence(const PictureSignals& s)
{
    return imageNetEvidence(
        s, [](const SceneObservation& o) { return SceneWordTable::isLandform(o.identifier); });
}

// The rooms, halls and shops people are inside: an interior spreads itself over the fittings it shows
// ("library", "shoji", "bannister", "window_shade", "studio_couch"…). Furniture the detector sees only counts
// against it when its box is large.
GroupEvidence interiorEvidence(const PictureSignals& s)
{
    return groupEvidence(
        s, [](const SceneObservation& o) { return SceneWordTable::isInterior(o.identifier); },
        [](const QString& label) { return !SceneWordTable::needsLargeBox(label); });
}

// Buildings and their parts (ImageNet's structure classes) and open-air things: a city at night, in fog or
// under a storm, or a plain block of flats, spreads itself over "palace", "castle", "fountain", "prison",
// "mobile_home", "liner"….
GroupEvidence builtUpEvidence(const PictureSignals& s)
{
    const VisionTagMatcher& matcher = VisionClassificationEngine::shared().matcher;
    return groupEvidence(
        s,
        [&](const SceneObservation& o) {
            return SceneWordTable::isOpenAir(o.identifier) ||
                   matcher.categories({o.identifier}).contains(CategoryKey::structure);
        },
        anyObject);
}

// How sure the labels together are of each category, and of each kind of thing.
struct LabelEvidence
{
    QHash<CategoryKey, float> categories;
    QHash<QString, float> kinds;
};

LabelEvidence evidenceOf(const std::vector<SceneObservation>& labels, const VisionTagMatcher& matcher)
{
    LabelEvidence e;
    for (const SceneObservation& o : labels) {
        for (const CategoryKey key : matcher.categories({o.identifier}))
            e.categories[key] += o.confidence;
        if (!o.kind.isEmpty())
            e.kinds[o.kind] += o.confidence;
    }
    return e;
}

class LabelList
{
public:
    void add(const QString& identifier, float confidence)
    {
        if (identifier.isEmpty() || m_seen.contains(identifier))
            return;
        m_seen.insert(identifier);
        m_labels.push_back({identifier, std::clamp(confidence, 0.f, 1.f)});
    }
    bool isEmpty() const { return m_labels.empty(); }
    std::vector<SceneObservation> take() { return std::move(m_labels); }

private:
    QSet<QString> m_seen;
    std::vector<SceneObservation> m_labels;
};

} // namespace

int PictureLabeler::personCount(const PictureSignals& s)
{
    int count = 0;
    if (s.people) {
        for (const platform::PersonDetection& p : *s.people) {
            if (p.score >= kPerson ||
                (p.score >= kWeakPerson && (faceInside(s, p.box) || objectPersonOverlaps(s, p.box))))
                ++count;
        }
    }
    if (count == 0) {
        const double passerBy = structureEvidence(s) >= kCategoryEvidence ? kPasserByAtBuilding : kPasserBy;
        if (bestObjectPerson(s, passerBy) >= kObjectPerson ||
            bestObjectPerson(s, kCloseUpShare) >= kCloseUpPerson)
            count = 1;
    }
    // A face alone stands for a person only in a photo (drawn faces are as large as they like), and not
    // on an animal or a dish: neither person detector seeing anyone there, the face is theirs.
    if (count == 0 && !PictureLabeler::isDrawing(s) && faceBearerEvidence(s) < kAnimalFace) {
        for (const platform::FaceBox& face : s.faces) {
            if (areaShare(face.box, s.analysedSize) >= kFaceAlone)
                count = 1;
        }
    }
    // Without either person detector a face is all there is to go by.
    if (count == 0 && !s.people && !s.objects && !s.faces.empty())
        count = 1;
    return count;
}

float PictureLabeler::personConfidence(const PictureSignals& s)
{
    if (personCount(s) == 0)
        return 0.f;
    float best = bestObjectPerson(s);
    if (s.people) {
        for (const platform::PersonDetection& p : *s.people)
            best = std::max(best, std::min(1.f, 0.5f + p.score));
    }
    for (const platform::FaceBox& face : s.faces)
        best = std::max(best, face.score);
    return std::max(best, 0.5f);
}

bool PictureLabeler::isScreenCapture(const PictureSignals& s)
{
    const qsizetype lines = s.textLines.size();
    if (s.screen.cameraMetadata || lines < kBrowserTextLines || s.textShare < kScreenTextShare)
        return false;
    // The look of a window (bars and panels in several flat colours) outweighs what it shows: a photo
    // opened in a program, or a page of text in a browser.
    const bool window = s.screen.flatColours >= kWindowColours && s.screen.flatShare >= kFlatScreen;
    if (lines < kScreenTextLines)
        return window && s.screen.screenSize;
    const bool flat =
        s.screen.flatShare >= kFlatAnySize || (s.screen.screenSize && s.screen.flatShare >= kFlatScreen);
    const bool webPage = std::any_of(s.imageNet.begin(), s.imageNet.end(), [](const SceneObservation& o) {
        return o.identifier == QLatin1String("web_site") && o.confidence >= kWebSite;
    });
    const bool savedWindow = screenClassEvidence(s) >= kWebSite && s.screen.flatShare >= kFlatJpegWindow &&
                             s.screen.flatColours >= kScreenColours;
    // A text box or a panel framed by straight edges: a message window's one grey has no second colour.
    const bool framed = s.screen.framedPanel && s.screen.flatShare >= kFlatScreen;
    // Light text on a dark flat backdrop is a terminal's or a dark-themed program's: paper is light.
    const bool darkWindow = s.screen.flatShare >= kFlatAnySize && s.screen.backdropGrey >= 0 &&
                            s.screen.backdropGrey <= kDarkBackdrop;
    // A whole desktop at a display's exact size: its wallpaper, a photo, leaves little flat, but ImageNet
    // knows the windows on it for a screen.
    const bool desktop = s.screen.screenSize && screenClassEvidence(s) >= kSureScreen;
    return (flat && s.screen.flatColours >= kScreenColours) || window || savedWindow || framed || desktop ||
           darkWindow || (webPage && s.screen.flatShare >= kFlatScreen);
}

bool PictureLabeler::isDrawing(const PictureSignals& s)
{
    if (isScreenCapture(s))
        return false;
    if (!s.drawing)
        return false;
    if (*s.drawing >= (s.screen.cameraMetadata ? kCameraDrawing : kDrawing))
        return true;
    // The drawing classifier knows painted and sketched pictures; flat colours from a drawing program it
    // often misses (a cartoon house scores 0.2), and no camera makes those. A drawing program fills its
    // shapes: at least one flat colour covers a noticeable part. Flat blocks each of another colour are a
    // photo's sky or shade clipped to white or black, or a plain gradient. A photo cut out onto a plain
    // backdrop has that too, but everything off the backdrop is textured.
    return !s.screen.cameraMetadata && s.textLines.size() < kScreenTextLines &&
           s.screen.flatShare >= kFlatDrawing && s.screen.flatColours >= 1 &&
           s.screen.offBackdropTexture < kCutOutPhoto;
}

bool PictureLabeler::isDocument(const PictureSignals& s)
{
    return (s.textShare >= kDocumentShare && s.textLines.size() >= kDocumentLines) ||
           s.textLines.size() >= 10;
}

std::vector<SceneObservation> PictureLabeler::labelsFromSignals(const PictureSignals& s)
{
    LabelList list;
    const bool screen = isScreenCapture(s);
    const bool drawing = isDrawing(s);
    const int people = personCount(s);
    if (people > 0) {
        list.add(QStringLiteral("person"), personConfidence(s));
        if (people > 1)
            list.add(QStringLiteral("people"), personConfidence(s));
    }
    if (screen)
        list.add(QStringLiteral("screenshot"), 0.9f);
    else if (drawing)
        list.add(QStringLiteral("illustration"), std::max(s.drawing.value_or(0.f), 0.6f));
    else if (isDocument(s)) {
        list.add(QStringLiteral("document"), float(std::min(1.0, 0.5 + s.textShare)));
        if (isTicket(s.textLines))
            list.add(QStringLiteral("票据"), 0.8f);
    }
    std::vector<SceneObservation> objects;
    if (s.objects) {
        for (const platform::DetectedObject& o : *s.objects) {
            const double share = areaShare(o.box, s.analysedSize);
            if (SceneWordTable::isIgnoredObject(o.label) || share < kSmallestObject ||
                (SceneWordTable::needsLargeBox(o.label) && share < kRoomObject))
                continue;
            objects.push_back({o.label, o.score});
        }
    }
    objects.insert(objects.end(), s.imageNet.begin(), s.imageNet.end());
    std::stable_sort(
        objects.begin(), objects.end(),
        [](const SceneObservation& a, const SceneObservation& b) { return a.confidence > b.confidence; });

    const VisionTagMatcher& matcher = VisionClassificationEngine::shared().matcher;
    LabelEvidence evidence = evidenceOf(objects, matcher);
    // Text the reader located counts for a document even where it could read none of it (blur, shake).
    evidence.categories[CategoryKey::documents] += float(s.textShare);
    const GroupEvidence open = openAirEvidence(s);
    const float landform = landformEvidence(s);
    const bool landscape = !(screen || drawing) && open.outweighs(kOpenAirShare);
    // A screen capture or a drawing is that whatever it shows: words that would file it under another
    // category are left out; words of no category still describe it.
    const auto fitsPicture = [&](const QString& identifier) {
        if (SceneWordTable::isWornItem(identifier) && people == 0 && (s.people || s.objects))
            return false;
        const QSet<CategoryKey> categories = matcher.categories({identifier});
        if (categories.isEmpty())
            return true;
        if (screen || drawing)
            return false;
        // Walls, fences and bridges in a landscape are part of the view, unless they outweigh the land.
        if (landscape && categories.contains(CategoryKey::structure) &&
            SceneWordTable::isOpenAir(identifier) &&
            evidence.categories.value(CategoryKey::structure) <= landform)
            return false;
        return std::any_of(categories.begin(), categories.end(), [&](CategoryKey key) {
            return evidence.categories.value(key) >= kCategoryEvidence;
        });
    };

    const GroupEvidence inside = interiorEvidence(s);
    const bool room = !(screen || drawing || landscape) && inside.outweighs(kInteriorShare);
    const GroupEvidence built = builtUpEvidence(s);
    const bool buildings = !(screen || drawing || landscape || room) && built.outweighs(kBuiltUpShare);
    if (!(screen || drawing)) {
        if (room)
            list.add(QStringLiteral("interior"), inside.group);
        if (buildings)
            list.add(QStringLiteral("structure"), built.group);
        if (landscape) {
            list.add(QStringLiteral("outdoor"), open.group);
            if (landform >= kOpenAirShare)
                list.add(QStringLiteral("landscape"), landform);
        }
        for (const SceneObservation& o : objects) {
            // ImageNet's "kite" is the bird of prey, named like COCO's kite in the sky: an animal implies
            // no scene.
            if (o.confidence <= kSceneWordSource || o.kind == QLatin1String("animal"))
                continue;
            for (const QString& word : SceneWordTable::sceneWordsFor(o.identifier))
                list.add(word, o.confidence);
        }
    }
    // The labels sure enough to be kept, then the kinds no kept label names, then the rest.
    for (const SceneObservation& o : objects) {
        if (o.confidence > kKeptLabel && fitsPicture(o.identifier))
            list.add(o.identifier, o.confidence);
    }
    for (auto kind = evidence.kinds.cbegin(); kind != evidence.kinds.cend(); ++kind) {
        if (kind.value() >= kKindEvidence)
            list.add(kind.key(), kind.value());
    }
    for (const SceneObservation& o : objects) {
        if (fitsPicture(o.identifier))
            list.add(o.identifier, o.confidence);
    }
    return list.take();
}

namespace {

// The category and the word that file a picture under each kind; a thing has no word, its own labels name it.
struct KindWord
{
    CategoryKey category;
    const char* word;
};

KindWord kindWord(PictureKind kind)
{
    switch (kind) {
    case PictureKind::people:
        return {CategoryKey::people, "person"};
    case PictureKind::document:
        return {CategoryKey::documents, "document"};
    case PictureKind::screenshot:
        return {CategoryKey::screenshot, "screenshot"};
    case PictureKind::illustration:
        return {CategoryKey::illustration, "illustration"};
    case PictureKind::structure:
        return {CategoryKey::structure, "structure"};
    case PictureKind::outdoor:
        return {CategoryKey::outdoor, "outdoor"};
    case PictureKind::interior:
        return {CategoryKey::furniture, "interior"};
    case PictureKind::thing:
        break;
    }
    return {CategoryKey::none, ""};
}

} // namespace

std::vector<SceneObservation> PictureLabeler::labels(const PictureSignals& s)
{
    std::vector<SceneObservation> found = labelsFromSignals(s);
    if (!s.kinds)
        return found;
    const PictureKind kind = s.kinds->likeliest();
    // People come from the detectors alone: a look is no evidence of anybody.
    if (s.kinds->of(kind) < kSureKind || kind == PictureKind::people)
        return found;
    std::vector<SceneObservation> ofKind = labelsOfKind(kind, s.kinds->of(kind), found);
    return ofKind.empty() ? found : ofKind;
}

std::vector<SceneObservation> PictureLabeler::labelsOfKind(PictureKind kind, float share,
                                                           const std::vector<SceneObservation>& found)
{
    const KindWord decisive = kindWord(kind);
    const VisionTagMatcher& matcher = VisionClassificationEngine::shared().matcher;
    LabelList list;
    list.add(QString::fromLatin1(decisive.word), share);
    for (const SceneObservation& o : found) {
        const QSet<CategoryKey> categories = matcher.categories({o.identifier});
        if (!categories.isEmpty() && !(categories.size() == 1 && categories.contains(decisive.category)))
            continue;
        // A thing's best name is as sure as that it is a thing: ImageNet may be unsure of the breed or
        // the make, and a name it is unsure of would not be kept.
        const bool thingsName = kind == PictureKind::thing && list.isEmpty();
        list.add(o.identifier, thingsName ? std::max(o.confidence, share) : o.confidence);
    }
    return list.take();
}

} // namespace lumaro::vision
