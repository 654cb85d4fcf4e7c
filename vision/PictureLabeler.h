// SPDX-License-Identifier: GPL-3.0-or-later
// Turns what the backends found in a picture into the labels the classification procedure reads.
#pragma once

#include "vision/PictureSignals.h"

#include <vector>

namespace lumaro::vision {

// Pure and thread-safe. Labels come out as observations (identifier, confidence), decisive words first:
// - "person"/"people" when a person detector finds someone (seen from any side), a face only confirming a
//   weak detection, or standing alone when it fills a good part of the frame and no animal is sure; a
//   person the object detector alone sees as a speck (a passer-by at a monument) is nobody, one filling
//   most of the frame (a close-up) counts from a lower score;
// - "screenshot" for a screen capture (no camera, text, and a window's flat bars and panels or what
//   ImageNet knows of screens), "illustration" for a drawing: a whole-picture fact that outranks what
//   the photo classifiers say about its contents, so their category words are left out;
// - "document" when text covers enough of the picture, "票据" besides it for a ticket or receipt;
// - scene words from the table over ImageNet and COCO labels (outdoor, landscape, sky, indoor, structure),
//   and "outdoor" (with "landscape") when open-air labels together outweigh anything else it names,
//   "structure" when building and open-air labels together do (a skyline in fog, a plain block of flats);
// - then the object words: COCO objects (score ≥ 0.45) and ImageNet labels, without the ones that wrongly
//   mean people (clothing seen without anybody wearing it, a corgi's "cardigan").
// Then what kind of picture it is (PictureKind), when the description is sure of it, outweighs the rules
// above, which guess it from ImageNet's classes, flat areas and lines of text: the kind's word names the
// picture and the labels of other categories are left out. Only people it never makes: the detectors
// alone find somebody.
class PictureLabeler
{
public:
    static std::vector<platform::SceneObservation> labels(const PictureSignals& signals);

    static bool isScreenCapture(const PictureSignals& signals);
    static bool isDrawing(const PictureSignals& signals);
    static bool isDocument(const PictureSignals& signals);
    // The best evidence of a person, 0 when there is none.
    static float personConfidence(const PictureSignals& signals);
    static int personCount(const PictureSignals& signals);

    // The drawing classifier's share of five classes: near a half it cannot tell drawn from photographed
    // (a rocket on its pad scores 0.51), and a photo taken for a drawing loses every word of what it shows.
    static constexpr float kDrawing = 0.55f;
    static constexpr float kCameraDrawing = 0.8f; // what it takes to call a picture with camera data drawn
    static constexpr float kPerson = 0.3f;        // MultiPose instance score that stands alone
    static constexpr float kWeakPerson = 0.2f;    // …that a face or the object detector must confirm
    static constexpr float kObjectPerson = 0.5f;  // the object detector's person alone
    // …and when that person fills this much of the frame: a close-up cut by the frame's edges (no feet, no
    // outline) leaves the detector less sure, and a yawn or closed eyes hide the face from the face detector.
    static constexpr float kCloseUpPerson = 0.4f;
    static constexpr double kCloseUpShare = 0.5;
    static constexpr double kFaceAlone = 0.02; // a face this large a part of the frame is a person
    static constexpr double kDocumentShare = 0.08;
    static constexpr int kDocumentLines = 3;
    // How sure the kind must be to outweigh the rules: below it, the rules' words decide. Measured on the
    // bench's sets, each left out of the fit in turn: 0.5–0.7 give the same marks within two of 439.
    static constexpr float kSureKind = 0.6f;

private:
    static std::vector<platform::SceneObservation> labelsFromSignals(const PictureSignals& signals);
    // The kind's word first, then those of the labels that file the picture under no other category; empty
    // for a thing none of whose labels is free of a category.
    static std::vector<platform::SceneObservation>
    labelsOfKind(PictureKind kind, float share, const std::vector<platform::SceneObservation>& found);
};

} // namespace lumaro::vision
