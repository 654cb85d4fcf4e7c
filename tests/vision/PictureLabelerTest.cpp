// SPDX-License-Identifier: GPL-3.0-or-later
// What the labeller makes of the backends' findings, and the mark the fixed procedure then gives.
#include "vision/PictureLabeler.h"

#include "vision/VisionClassificationEngine.h"
#include "vision/VisionPictureAnalyzer.h"

#include <gtest/gtest.h>

using namespace lumaro::vision;
using lumaro::platform::DetectedObject;
using lumaro::platform::FaceBox;
using lumaro::platform::PersonDetection;

namespace {

PictureSignals photo()
{
    PictureSignals s;
    s.pixelSize = s.analysedSize = QSize(1000, 800);
    s.objects = std::vector<DetectedObject>{};
    s.people = std::vector<PersonDetection>{};
    s.drawing = 0.05f;
    s.screen.cameraMetadata = true;
    return s;
}

// The description sure of one kind, the rest shared out evenly.
PictureKindScores sureOf(PictureKind kind, float share = 0.9f)
{
    PictureKindScores scores;
    scores.shares.fill((1.f - share) / (kPictureKinds - 1));
    scores.shares[size_t(kind)] = share;
    return scores;
}

PersonDetection personAt(QRectF box, float score)
{
    PersonDetection p;
    p.box = box;
    p.score = score;
    return p;
}

QString markOf(const PictureSignals& s)
{
    QStringList labels;
    for (const auto& o : VisionPictureAnalyzer::keptObservations(PictureLabeler::labels(s)))
        labels << o.identifier;
    return VisionClassificationEngine::shared().mark(labels, labels, s.pixelSize.width(),
                                                     s.pixelSize.height());
}

struct Case
{
    const char* name;
    PictureSignals signals;
    const char* mark;
};

void PrintTo(const Case& c, std::ostream* os)
{
    *os << c.name;
}

std::vector<Case> cases()
{
    std::vector<Case> all;
    {
        PictureSignals s = photo(); // seen from behind: no face, the pose detector alone
        s.people->push_back(personAt({300, 100, 200, 600}, 0.49f));
        s.imageNet = {{QStringLiteral("park_bench"), 0.4f}};
        all.push_back({"aPersonFromBehindIsPeople", s, "MARK_PEOPLE"});
    }
    {
        PictureSignals s = photo(); // a weak pose confirmed by a face inside it
        s.people->push_back(personAt({300, 100, 200, 600}, 0.22f));
        s.faces.push_back({QRectF(360, 120, 40, 40), 0.9f});
        all.push_back({"aFaceConfirmsAWeakPerson", s, "MARK_PEOPLE"});
    }
    {
        PictureSignals s = photo(); // a weak pose alone is nobody
        s.people->push_back(personAt({300, 100, 200, 600}, 0.22f));
        s.imageNet = {{QStringLiteral("giraffe"), 0.7f}};
        all.push_back({"aWeakPoseAloneIsNobody", s, "MARK_DIVERSE_GIRAFFE"});
    }
    {
        PictureSignals s = photo(); // a tiny cartoon face in a newspaper is no person; the page is a document
        s.faces.push_back({QRectF(500, 500, 20, 20), 0.95f});
        s.textLines = QStringList{QStringLiteral("SUDOKU"), QStringLiteral("HARD"), QStringLiteral("7 3 9")};
        s.textShare = 0.2;
        all.push_back({"aSmallFaceInANewspaperIsNoPerson", s, "MARK_DOCUMENTS"});
    }
    {
        PictureSignals s = photo(); // a face filling the frame stands alone
        s.faces.push_back({QRectF(300, 200, 300, 300), 0.9f});
        all.push_back({"aCloseUpFaceIsAPerson", s, "MARK_PEOPLE"});
    }
    {
        PictureSignals s = photo(); // a purse and a corgi's "cardigan" are no people
        s.imageNet = {{QStringLiteral("cardigan"), 0.6f}, {QStringLiteral("purse"), 0.3f}};
        all.push_back({"aCorgiIsNotClothing", s, "MARK_DIVERSE_CARDIGAN"});
    }
    {
        PictureSignals s = photo(); // a suit on a hanger: clothing counts as people only when worn
        s.imageNet = {{QStringLiteral("suit"), 0.8f}, {QStringLiteral("wardrobe"), 0.6f}};
        all.push_back({"clothingWithNobodyInItIsNoPerson", s, "MARK_FURNITURE"});
    }
    {
        PictureSignals s = photo(); // a screen capture of a text page is a screenshot, not a document
        s.screen = {false, true, 0.6, 3};
        s.drawing = 0.1f;
        s.textLines = QStringList{QStringLiteral("Release notes"), QStringLiteral("Known problems"),
                                  QStringLiteral("Download")};
        s.textShare = 0.1;
        s.imageNet = {{QStringLiteral("web_site"), 0.5f}, {QStringLiteral("monitor"), 0.3f}};
        all.push_back({"aScreenCaptureIsAScreenshot", s, "MARK_SCREENSHOT"});
    }
    {
        PictureSignals s = photo(); // the same flat page photographed by a camera is a document
        s.screen = {true, true, 0.6, 3};
        s.textLines = QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
        s.textShare = 0.1;
        all.push_back({"aCameraPictureIsNeverAScreenshot", s, "MARK_DOCUMENTS"});
    }
    {
        PictureSignals s = photo(); // a drawing of a house is an illustration, whatever ImageNet sees in it
        s.drawing = 0.8f;
        s.screen = {false, false, 0.5, 4};
        s.imageNet = {{QStringLiteral("church"), 0.5f}, {QStringLiteral("comic_book"), 0.2f}};
        all.push_back({"aDrawingOutranksItsContents", s, "MARK_ILLUSTRATION"});
    }
    {
        PictureSignals s = photo(); // a drawing program's flat colours make a drawing the classifier missed
        s.drawing = 0.18f;
        s.screen = {false, false, 0.9, 6};
        s.imageNet = {{QStringLiteral("wall_clock"), 0.8f}};
        all.push_back({"flatColoursWithoutACameraAreADrawing", s, "MARK_ILLUSTRATION"});
    }
    {
        PictureSignals s = photo(); // a cartoon robot's big face is no person
        s.drawing = 0.1f;
        s.screen = {false, false, 0.44, 1};
        s.faces.push_back({QRectF(300, 200, 300, 300), 0.9f});
        all.push_back({"aDrawnFaceIsNoPerson", s, "MARK_ILLUSTRATION"});
    }
    {
        PictureSignals s = photo(); // a terminal window: one flat colour, but ImageNet knows a screen capture
        s.screen = {false, false, 0.6, 1};
        s.textLines = QStringList{QStringLiteral("$ ls"), QStringLiteral("a b"), QStringLiteral("$ make")};
        s.textShare = 0.1;
        s.imageNet = {{QStringLiteral("web_site"), 0.9f}};
        all.push_back({"aTerminalWindowIsAScreenshot", s, "MARK_SCREENSHOT"});
    }
    {
        PictureSignals s = photo(); // a lakeside photo gets the scene words of the table
        s.imageNet = {{QStringLiteral("lakeside"), 0.5f}};
        all.push_back({"aLakesideIsOutdoor", s, "MARK_OUTDOOR"});
    }
    {
        PictureSignals s = photo(); // a forest path: no one label is sure, open-air places together are
        s.imageNet = {{QStringLiteral("valley"), 0.12f},        {QStringLiteral("lakeside"), 0.11f},
                      {QStringLiteral("mountain_bike"), 0.08f}, {QStringLiteral("yurt"), 0.08f},
                      {QStringLiteral("stone_wall"), 0.05f},    {QStringLiteral("worm_fence"), 0.02f}};
        all.push_back({"aViewSpreadOverOpenAirLabelsIsOutdoor", s, "MARK_OUTDOOR"});
    }
    {
        PictureSignals s = photo(); // a bench by the water is an outdoor picture, not furniture
        s.imageNet = {{QStringLiteral("park_bench"), 0.22f},
                      {QStringLiteral("sandbar"), 0.08f},
                      {QStringLiteral("hay"), 0.06f},
                      {QStringLiteral("drumstick"), 0.05f}};
        all.push_back({"aParkBenchByTheWaterIsOutdoor", s, "MARK_OUTDOOR"});
    }
    {
        PictureSignals s = photo(); // the bird by the lake is surer than the lake
        s.imageNet = {{QStringLiteral("bald_eagle"), 0.5f},
                      {QStringLiteral("lakeside"), 0.15f},
                      {QStringLiteral("seashore"), 0.1f},
                      {QStringLiteral("sandbar"), 0.1f}};
        all.push_back({"aBirdByALakeIsTheBird", s, "MARK_DIVERSE_BALD_EAGLE"});
    }
    {
        PictureSignals s = photo(); // a drawing score near a half is no evidence against a photo
        s.screen.cameraMetadata = false;
        s.drawing = 0.51f;
        s.imageNet = {{QStringLiteral("missile"), 0.33f}, {QStringLiteral("projectile"), 0.15f}};
        all.push_back({"aBorderlineDrawingScoreLeavesAPhoto", s, "MARK_DIVERSE_MISSILE"});
    }
    {
        PictureSignals s = photo(); // a camera's picture must be surely drawn to be an illustration
        s.drawing = 0.7f;
        s.imageNet = {{QStringLiteral("parachute"), 0.9f}};
        all.push_back({"aCameraPictureNeedsASureDrawingScore", s, "MARK_OUTDOOR"});
    }
    {
        PictureSignals s = photo(); // a dining table under a plate of food does not make furniture
        s.objects->push_back({QStringLiteral("dining_table"), QRectF(0, 600, 1000, 150), 0.6f});
        s.objects->push_back({QStringLiteral("pizza"), QRectF(300, 300, 400, 300), 0.8f});
        all.push_back({"foodOnATableIsFood", s, "MARK_DIVERSE_PIZZA"});
    }
    {
        PictureSignals s = photo(); // a receipt
        s.textLines =
            QStringList{QStringLiteral("Bakery"), QStringLiteral("RECEIPT"), QStringLiteral("Total 4.50")};
        s.textShare = 0.3;
        all.push_back({"aReceiptIsATicket", s, "MARK_DOCUMENTS_TICKET"});
    }
    {
        PictureSignals s = photo(); // one unsure kitchen class over a fish is no tools picture
        s.imageNet = {{QStringLiteral("strainer"), 0.35f},
                      {QStringLiteral("goldfish"), 0.3f, QStringLiteral("animal")}};
        all.push_back({"aWeakLoneUtensilDoesNotMakeTools", s, "MARK_DIVERSE_GOLDFISH"});
    }
    {
        PictureSignals s = photo(); // a sure one does
        s.imageNet = {{QStringLiteral("frying_pan"), 0.8f},
                      {QStringLiteral("goldfish"), 0.1f, QStringLiteral("animal")}};
        all.push_back({"aSureUtensilMakesTools", s, "MARK_TOOLS"});
    }
    {
        PictureSignals s = photo(); // unsure labels of one category add up
        s.imageNet = {{QStringLiteral("menu"), 0.3f}, {QStringLiteral("envelope"), 0.25f}};
        all.push_back({"weakLabelsOfOneCategoryAddUp", s, "MARK_DOCUMENTS"});
    }
    {
        PictureSignals s = photo(); // an unsure "groom" with nobody found is no person
        s.imageNet = {{QStringLiteral("balloon"), 0.35f}, {QStringLiteral("groom"), 0.3f}};
        all.push_back({"aWeakClassifierPersonWordIsNobody", s, "MARK_DIVERSE_BALLOON"});
    }
    {
        PictureSignals s = photo(); // a stone wall across a valley is part of the view
        s.imageNet = {{QStringLiteral("valley"), 0.5f},
                      {QStringLiteral("stone_wall"), 0.5f},
                      {QStringLiteral("cliff"), 0.1f}};
        all.push_back({"aWallInAValleyIsPartOfTheLandscape", s, "MARK_OUTDOOR"});
    }
    {
        PictureSignals s = photo(); // a bridge's cables and masts against the sky: poles stand outdoors
        s.imageNet = {{QStringLiteral("pole"), 0.44f},
                      {QStringLiteral("solar_dish"), 0.23f},
                      {QStringLiteral("suspension_bridge"), 0.02f}};
        all.push_back({"polesAndMastsAreOutdoors", s, "MARK_OUTDOOR"});
    }
    {
        PictureSignals s = photo(); // a church in the hills is a building
        s.imageNet = {{QStringLiteral("church"), 0.6f}, {QStringLiteral("valley"), 0.3f}};
        all.push_back({"aChurchInTheHillsIsABuilding", s, "MARK_STRUCTURE"});
    }
    {
        PictureSignals s = photo(); // a dog of an unsure breed is still an animal
        const QString animal = QStringLiteral("animal");
        s.imageNet = {{QStringLiteral("beagle"), 0.18f, animal},
                      {QStringLiteral("basset"), 0.15f, animal},
                      {QStringLiteral("walker_hound"), 0.12f, animal}};
        all.push_back({"unsureBreedsNameTheirKind", s, "MARK_DIVERSE_ANIMAL"});
    }
    {
        PictureSignals s = photo(); // mixed dishes by a spoon: the food outweighs the spoon
        const QString food = QStringLiteral("food");
        s.imageNet = {{QStringLiteral("wooden_spoon"), 0.21f},
                      {QStringLiteral("pomegranate"), 0.17f, food},
                      {QStringLiteral("soup_bowl"), 0.17f, food},
                      {QStringLiteral("orange"), 0.15f, food}};
        all.push_back({"mixedDishesAreFood", s, "MARK_DIVERSE_FOOD"});
    }
    {
        PictureSignals s = photo(); // a blurred page: text located but not read, an unsure "menu"
        s.imageNet = {{QStringLiteral("menu"), 0.26f}, {QStringLiteral("crossword_puzzle"), 0.11f}};
        s.textShare = 0.44;
        all.push_back({"locatedTextMakesAnUnsureMenuADocument", s, "MARK_DOCUMENTS"});
    }
    {
        PictureSignals s = photo(); // without any person detector installed, a face is all there is
        s.people.reset();
        s.objects.reset();
        s.faces.push_back({QRectF(500, 500, 20, 20), 0.9f});
        all.push_back({"withoutDetectorsAFaceStillCounts", s, "MARK_PEOPLE"});
    }
    {
        PictureSignals s = photo(); // an ape's face, which neither person detector takes for anyone
        const QString animal = QStringLiteral("animal");
        s.imageNet = {{QStringLiteral("chimpanzee"), 0.75f, animal},
                      {QStringLiteral("siamang"), 0.24f, animal}};
        s.faces.push_back({QRectF(350, 250, 300, 280), 1.0f});
        all.push_back({"anApesFaceIsNoPerson", s, "MARK_DIVERSE_CHIMPANZEE"});
    }
    {
        PictureSignals s = photo(); // tourists a speck at the foot of a monument
        s.imageNet = {{QStringLiteral("mosque"), 0.92f}, {QStringLiteral("palace"), 0.04f}};
        s.objects->push_back({QStringLiteral("person"), QRectF(500, 700, 10, 30), 0.51f});
        s.objects->push_back({QStringLiteral("person"), QRectF(560, 690, 12, 40), 0.47f});
        all.push_back({"passersByAtAMonumentAreNoPeople", s, "MARK_STRUCTURE"});
    }
    {
        PictureSignals s = photo(); // pylons and wires against the sky, which ImageNet takes for a ship
        s.imageNet = {{QStringLiteral("pirate"), 0.6f},
                      {QStringLiteral("pole"), 0.14f},
                      {QStringLiteral("solar_dish"), 0.05f},
                      {QStringLiteral("water_tower"), 0.05f}};
        all.push_back({"shipsAndWhatLooksLikeThemAreOutdoors", s, "MARK_OUTDOOR"});
    }
    {
        PictureSignals s = photo(); // a park's terrace under trees: no label sure, open-air ones together
        s.imageNet = {{QStringLiteral("mobile_home"), 0.11f}, {QStringLiteral("lakeside"), 0.05f},
                      {QStringLiteral("geyser"), 0.04f},      {QStringLiteral("tank"), 0.03f},
                      {QStringLiteral("sandbar"), 0.03f},     {QStringLiteral("worm_fence"), 0.03f},
                      {QStringLiteral("oxcart"), 0.02f},      {QStringLiteral("seashore"), 0.02f},
                      {QStringLiteral("patio"), 0.02f},       {QStringLiteral("horse_cart"), 0.01f}};
        all.push_back({"aParkTerraceIsOutdoor", s, "MARK_OUTDOOR"});
    }
    {
        PictureSignals s = photo(); // a photo editor's window around a sunflower: panels in many flat colours
        s.screen = {false, false, 0.36, 5};
        s.textLines = QStringList{QStringLiteral("File Edit View"), QStringLiteral("Layers"),
                                  QStringLiteral("Opacity 100.0")};
        s.textShare = 0.05;
        s.imageNet = {{QStringLiteral("daisy"), 0.73f, QStringLiteral("plant")}};
        all.push_back({"aProgramsWindowAroundAPhotoIsAScreenshot", s, "MARK_SCREENSHOT"});
    }
    {
        PictureSignals s = photo(); // a dialog saved as JPEG: its flat bars blurred, full of field labels
        s.screen = {false, false, 0.26, 2};
        s.textLines = QStringList{QStringLiteral("New Name"), QStringLiteral("New Location"),
                                  QStringLiteral("Proceed Cancel")};
        s.textShare = 0.25;
        s.imageNet = {{QStringLiteral("menu"), 0.29f}, {QStringLiteral("web_site"), 0.25f}};
        all.push_back({"aDialogSavedAsJpegIsAScreenshot", s, "MARK_SCREENSHOT"});
    }
    {
        PictureSignals s = photo(); // a whole screen with a browser showing a photo on black
        s.pixelSize = s.analysedSize = QSize(1920, 1080);
        s.screen = {false, true, 0.9, 4};
        s.drawing = 0.99f;
        s.textLines = QStringList{QStringLiteral("taj.jpg (400x300)"), QStringLiteral("file:///taj.jpg")};
        s.textShare = 0.012;
        s.imageNet = {{QStringLiteral("dome"), 0.16f}, {QStringLiteral("mosque"), 0.13f}};
        all.push_back({"aBrowserShowingAPhotoIsAScreenshot", s, "MARK_SCREENSHOT"});
    }
    {
        PictureSignals s = photo(); // a message window: one grey, but its text sits in a framed box
        s.screen = {false, false, 0.76, 1, true};
        s.textLines = QStringList{QStringLiteral("The train left the valley"),
                                  QStringLiteral("slowly through"), QStringLiteral("Keep Discard")};
        s.textShare = 0.12;
        s.imageNet = {{QStringLiteral("envelope"), 0.19f}, {QStringLiteral("web_site"), 0.14f}};
        all.push_back({"aMessageWindowsFramedBoxIsAScreenshot", s, "MARK_SCREENSHOT"});
    }
    {
        PictureSignals s =
            photo(); // a tower against a sky clipped to white in blocks of slightly other tones
        s.screen = {false, false, 0.30, 0};
        s.drawing = 0.03f;
        s.imageNet = {{QStringLiteral("church"), 0.28f},
                      {QStringLiteral("bell_cote"), 0.15f},
                      {QStringLiteral("castle"), 0.08f},
                      {QStringLiteral("palace"), 0.08f}};
        all.push_back({"flatBlocksOfNoOneColourAreNoDrawing", s, "MARK_STRUCTURE"});
    }
    {
        PictureSignals s = photo(); // a drawing program's fills: the same flat share in two colours
        s.screen = {false, false, 0.30, 2};
        s.drawing = 0.03f;
        s.imageNet = {{QStringLiteral("church"), 0.28f}, {QStringLiteral("bell_cote"), 0.15f}};
        all.push_back({"flatBlocksInFilledColoursAreADrawing", s, "MARK_ILLUSTRATION"});
    }
    {
        PictureSignals s = photo(); // the view from an airliner's window over the coast
        s.imageNet = {{QStringLiteral("wing"), 0.99f}, {QStringLiteral("volcano"), 0.01f}};
        all.push_back({"aPlanesWingIsAViewOutdoors", s, "MARK_OUTDOOR"});
    }
    {
        PictureSignals s = photo(); // tourists under a city gate: larger specks, still passers-by
        s.screen.cameraMetadata = false;
        s.imageNet = {{QStringLiteral("palace"), 0.31f},
                      {QStringLiteral("pier"), 0.22f},
                      {QStringLiteral("triumphal_arch"), 0.14f},
                      {QStringLiteral("viaduct"), 0.12f}};
        s.objects->push_back({QStringLiteral("person"), QRectF(400, 580, 40, 200), 0.64f});
        s.objects->push_back({QStringLiteral("person"), QRectF(600, 600, 30, 150), 0.56f});
        all.push_back({"passersByUnderACityGateAreNoPeople", s, "MARK_STRUCTURE"});
    }
    {
        PictureSignals s = photo(); // the same walkers on a path with no building are the picture's people
        s.imageNet = {{QStringLiteral("pole"), 0.36f}, {QStringLiteral("palace"), 0.1f}};
        s.objects->push_back({QStringLiteral("person"), QRectF(400, 580, 40, 200), 0.64f});
        all.push_back({"walkersWithoutABuildingArePeople", s, "MARK_PEOPLE"});
    }
    {
        PictureSignals s = photo(); // a whole desktop: a photo for wallpaper leaves little flat
        s.pixelSize = s.analysedSize = QSize(1024, 768);
        s.screen = {false, true, 0.18, 3};
        s.drawing = 0.35f;
        for (int line = 0; line < 24; ++line) // a panel, a dock and two windows' worth of text
            s.textLines << QStringLiteral("Settings %1").arg(line);
        s.textShare = 0.033;
        s.imageNet = {{QStringLiteral("web_site"), 0.9f}, {QStringLiteral("monitor"), 0.03f}};
        all.push_back({"aDesktopAtADisplaysSizeIsAScreenshot", s, "MARK_SCREENSHOT"});
    }
    {
        PictureSignals s = photo(); // a face drawn in latte art is the coffee's
        s.screen.cameraMetadata = false;
        s.imageNet = {{QStringLiteral("espresso"), 0.99f, QStringLiteral("food")}};
        s.objects->push_back({QStringLiteral("cup"), QRectF(100, 100, 700, 500), 0.5f});
        s.faces.push_back({QRectF(300, 200, 600, 500), 0.76f});
        all.push_back({"aFaceInLatteArtIsNoPerson", s, "MARK_DIVERSE_ESPRESSO"});
    }
    {
        PictureSignals s = photo(); // a lecture hall: no fitting sure, the room's fittings together are
        s.screen.cameraMetadata = false;
        s.imageNet = {{QStringLiteral("library"), 0.27f},     {QStringLiteral("shoji"), 0.07f},
                      {QStringLiteral("binder"), 0.06f},      {QStringLiteral("studio_couch"), 0.04f},
                      {QStringLiteral("bannister"), 0.04f},   {QStringLiteral("window_shade"), 0.03f},
                      {QStringLiteral("sliding_door"), 0.02f}};
        all.push_back({"aRoomSpreadOverItsFittingsIsAnInterior", s, "MARK_FURNITURE"});
    }
    {
        PictureSignals s = photo(); // a cat on a desk is the cat, not the room
        const QString animal = QStringLiteral("animal");
        s.imageNet = {{QStringLiteral("tabby"), 0.45f, animal},
                      {QStringLiteral("desk"), 0.2f},
                      {QStringLiteral("studio_couch"), 0.1f},
                      {QStringLiteral("bookcase"), 0.05f}};
        all.push_back({"aCatInARoomIsTheCat", s, "MARK_DIVERSE_TABBY"});
    }
    {
        PictureSignals s = photo(); // a plush toy cut out onto white: flat backdrop, fur everywhere else
        s.screen = {false, false, 0.34, 1};
        s.screen.offBackdropTexture = 0.99;
        s.drawing = 0.0f;
        s.imageNet = {{QStringLiteral("teddy"), 0.99f}};
        all.push_back({"aPhotoCutOutOntoAPlainBackdropIsNoDrawing", s, "MARK_DIVERSE_TEDDY"});
        s.screen.offBackdropTexture = 0.9; // a drawing on its background keeps smooth fills and strokes
        all.push_back({"aDrawingWithSmoothFillsOnItsBackdropIsADrawing", s, "MARK_ILLUSTRATION"});
    }
    {
        PictureSignals s = photo(); // ImageNet's kite is a bird of prey, not a kite in the sky
        const QString animal = QStringLiteral("animal");
        s.imageNet = {{QStringLiteral("kite"), 0.89f, animal},
                      {QStringLiteral("great_grey_owl"), 0.07f, animal}};
        s.objects->push_back({QStringLiteral("bird"), QRectF(300, 200, 400, 500), 0.59f});
        all.push_back({"theBirdCalledKiteIsNoSky", s, "MARK_DIVERSE_KITE"});
        s.imageNet.clear(); // COCO's kite flies in the sky
        s.objects = std::vector<DetectedObject>{{QStringLiteral("kite"), QRectF(300, 200, 200, 200), 0.7f}};
        all.push_back({"aKiteToyIsInTheSky", s, "MARK_OUTDOOR"});
    }
    {
        PictureSignals s = photo(); // a media centre's home menu: ImageNet sees a television, not a page
        s.pixelSize = s.analysedSize = QSize(1920, 1080);
        s.screen = {false, true, 0.16, 2};
        s.drawing = 0.41f;
        for (int line = 0; line < 14; ++line)
            s.textLines << QStringLiteral("Music %1").arg(line);
        s.textShare = 0.021;
        s.imageNet = {{QStringLiteral("television"), 0.30f},
                      {QStringLiteral("scoreboard"), 0.30f},
                      {QStringLiteral("screen"), 0.14f},
                      {QStringLiteral("web_site"), 0.10f}};
        all.push_back({"aMediaCentreAtADisplaysSizeIsAScreenshot", s, "MARK_SCREENSHOT"});
    }
    {
        PictureSignals s = photo(); // a skyline in fog: buildings and boats, none of them sure
        s.imageNet = {{QStringLiteral("palace"), 0.10f},  {QStringLiteral("fireboat"), 0.10f},
                      {QStringLiteral("church"), 0.06f},  {QStringLiteral("fountain"), 0.05f},
                      {QStringLiteral("airship"), 0.05f}, {QStringLiteral("bell_cote"), 0.05f}};
        all.push_back({"aCityInFogSpreadOverBuildingsIsAStructure", s, "MARK_STRUCTURE"});
        s.imageNet.insert(s.imageNet.begin(),
                          {QStringLiteral("airship"), 0.4f}); // …unless a thing outweighs them
        all.push_back({"aThingSurerThanTheBuildingsIsTheThing", s, "MARK_DIVERSE_AIRSHIP"});
    }
    {
        PictureSignals s = photo(); // a terminal listing processes: light text on one dark flat colour
        s.screen = {false, false, 0.78, 1};
        s.screen.backdropGrey = 30;
        s.drawing = 0.47f;
        for (int line = 0; line < 40; ++line)
            s.textLines << QStringLiteral("%1 root 0.0 0.1 kworker").arg(100 + line);
        s.textShare = 0.21;
        s.imageNet = {{QStringLiteral("web_site"), 0.36f}, {QStringLiteral("menu"), 0.22f}};
        all.push_back({"lightTextOnADarkFlatBackdropIsAScreenshot", s, "MARK_SCREENSHOT"});
        s.screen.backdropGrey = 254; // the same lines printed on white paper
        all.push_back({"darkTextOnAWhiteFlatBackdropIsADocument", s, "MARK_DOCUMENTS"});
    }
    {
        PictureSignals s = photo(); // a yawning man filling the frame: eyes shut, no face found, no pose
        s.screen.cameraMetadata = false;
        s.imageNet = {{QStringLiteral("cowboy_hat"), 0.05f}, {QStringLiteral("wig"), 0.04f}};
        s.objects->push_back({QStringLiteral("person"), QRectF(20, 20, 960, 775), 0.48f});
        all.push_back({"aCloseUpFillingTheFrameIsAPersonFromALowerScore", s, "MARK_PEOPLE"});
        s.objects->front().box = QRectF(400, 300, 250, 300); // the same score on a smaller figure is not
        all.push_back({"aWeakPersonNotFillingTheFrameIsNobody", s, "MARK_UNTAG"});
    }
    {
        PictureSignals s = photo(); // a painted town: ImageNet sees buildings, the description a painting
        s.imageNet = {{QStringLiteral("palace"), 0.6f}, {QStringLiteral("church"), 0.2f}};
        s.kinds = sureOf(PictureKind::illustration);
        all.push_back({"aPaintingOfBuildingsIsAnIllustration", s, "MARK_ILLUSTRATION"});
        s.kinds = sureOf(PictureKind::illustration, 0.5f); // unsure, the rules' words stand
        all.push_back({"anUnsureKindLeavesTheRulesWords", s, "MARK_STRUCTURE"});
        s.kinds = sureOf(PictureKind::outdoor); // an old town seen from the hills
        s.imageNet.push_back({QStringLiteral("valley"), 0.1f});
        all.push_back({"aViewOverBuildingsIsOutdoor", s, "MARK_OUTDOOR"});
    }
    {
        PictureSignals s = photo(); // a drawn goldfish ImageNet takes for a jellyfish
        s.imageNet = {{QStringLiteral("jellyfish"), 0.7f, QStringLiteral("animal")}};
        s.kinds = sureOf(PictureKind::illustration);
        all.push_back({"aDrawnAnimalIsAnIllustration", s, "MARK_ILLUSTRATION"});
        s.kinds = sureOf(PictureKind::thing); // a photo of one
        all.push_back({"aPhotographedAnimalStaysAThing", s, "MARK_DIVERSE_JELLYFISH"});
    }
    {
        PictureSignals s = photo(); // a thing whose every label files it somewhere keeps the rules' mark
        s.imageNet = {{QStringLiteral("palace"), 0.8f}};
        s.kinds = sureOf(PictureKind::thing);
        all.push_back({"aThingWithoutAWordOfItsOwnKeepsTheRulesMark", s, "MARK_STRUCTURE"});
    }
    {
        PictureSignals s = photo(); // a gorilla the pose detector takes for a man
        s.people->push_back(personAt({300, 100, 400, 600}, 0.45f));
        s.imageNet = {{QStringLiteral("gorilla"), 0.9f, QStringLiteral("animal")}};
        all.push_back({"aPersonFoundIsPeopleWhateverTheRulesSee", s, "MARK_PEOPLE"});
        s.kinds = sureOf(PictureKind::thing);
        all.push_back({"aSureThingOutweighsAPersonFound", s, "MARK_DIVERSE_GORILLA"});
    }
    {
        PictureSignals s = photo(); // nobody found: a look is never taken for people
        s.imageNet = {{QStringLiteral("grape"), 0.7f, QStringLiteral("food")}};
        s.kinds = sureOf(PictureKind::people);
        all.push_back({"aLookAloneMakesNobody", s, "MARK_DIVERSE_GRAPE"});
        s.kinds = sureOf(PictureKind::screenshot); // a window's look with too little text for the rules
        all.push_back({"aSureScreenLookIsAScreenshot", s, "MARK_SCREENSHOT"});
    }
    {
        PictureSignals s = photo(); // a lizard ImageNet is unsure of the species of
        s.imageNet = {{QStringLiteral("agama"), 0.15f, QStringLiteral("animal")},
                      {QStringLiteral("frilled_lizard"), 0.1f, QStringLiteral("animal")}};
        all.push_back({"anUnsureThingIsUntagged", s, "MARK_UNTAG"});
        s.kinds = sureOf(PictureKind::thing); // sure it is a thing: its best name is kept
        all.push_back({"aSureThingKeepsItsBestName", s, "MARK_DIVERSE_AGAMA"});
    }
    return all;
}

class PictureLabelerMarks : public ::testing::TestWithParam<Case>
{
};

TEST_P(PictureLabelerMarks, GiveTheExpectedMark)
{
    EXPECT_EQ(markOf(GetParam().signals), QString::fromLatin1(GetParam().mark));
}

INSTANTIATE_TEST_SUITE_P(Table, PictureLabelerMarks, ::testing::ValuesIn(cases()),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(PictureLabeler, ACleanPageOfPaperAloneIsADocumentNotAScreenshot)
{
    PictureSignals s = photo();
    s.screen = {false, false, 0.8, 1};
    s.textLines = QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    s.textShare = 0.2;
    s.drawing = 0.1f;
    EXPECT_FALSE(PictureLabeler::isScreenCapture(s));
    EXPECT_EQ(markOf(s), QStringLiteral("MARK_DOCUMENTS"));
    s.screen.flatColours = 2;
    EXPECT_EQ(markOf(s), QStringLiteral("MARK_SCREENSHOT"));
}

TEST(PictureLabeler, TwoPeopleAddThePeopleWordAndDecisiveWordsComeFirst)
{
    PictureSignals s = photo();
    s.imageNet = {{QStringLiteral("soccer_ball"), 0.95f}};
    s.people->push_back(personAt({0, 0, 300, 700}, 0.5f));
    s.people->push_back(personAt({500, 0, 300, 700}, 0.4f));
    const auto labels = PictureLabeler::labels(s);
    ASSERT_GE(labels.size(), 3u);
    EXPECT_EQ(labels[0].identifier, QStringLiteral("person"));
    EXPECT_EQ(labels[1].identifier, QStringLiteral("people"));
    EXPECT_EQ(labels[2].identifier, QStringLiteral("soccer_ball"));
    EXPECT_EQ(PictureLabeler::personCount(s), 2);
}

// The land itself stays named beside the scene words; only the wall goes.
TEST(PictureLabeler, AValleyKeepsItsNameWhenItsWallIsLeftOut)
{
    PictureSignals s = photo();
    s.imageNet = {{QStringLiteral("valley"), 0.5f},
                  {QStringLiteral("stone_wall"), 0.5f},
                  {QStringLiteral("cliff"), 0.1f}};
    QStringList names;
    for (const auto& o : PictureLabeler::labels(s))
        names << o.identifier;
    EXPECT_TRUE(names.contains(QStringLiteral("valley"))) << names.join(',').toStdString();
    EXPECT_FALSE(names.contains(QStringLiteral("stone_wall")));
}

} // namespace
