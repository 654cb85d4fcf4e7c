// SPDX-License-Identifier: GPL-3.0-or-later
// Everything the analysis backends said about one picture, before it becomes labels.
#pragma once

#include "platform/vision/FaceDetector.h"
#include "platform/vision/ObjectDetector.h"
#include "platform/vision/PersonDetector.h"
#include "platform/vision/SceneClassifier.h"
#include "vision/PictureKind.h"

#include <QSize>
#include <QStringList>

#include <optional>
#include <vector>

namespace lumaro::vision {

// Whether a picture was captured from a screen rather than a camera (see ScreenCaptureEvidence).
struct ScreenEvidence
{
    bool cameraMetadata = false;     // the file names a camera make or model
    bool screenSize = false;         // exactly a common display size
    double flatShare = 0.0;          // part of the picture in perfectly flat blocks, as UI backgrounds are
    int flatColours = 0;             // distinct colours of those blocks that cover a noticeable part
    bool framedPanel = false;        // flat areas meet along long straight edges, across and down
    double offBackdropTexture = 0.0; // see FlatAreas: photo texture off the backdrop
    int backdropGrey = -1;           // see FlatAreas: how light the commonest flat colour is
};

// A missing backend leaves its part empty (or nullopt); the labeller then does without that signal.
struct PictureSignals
{
    QSize pixelSize;                                              // the picture's own size
    std::vector<platform::SceneObservation> imageNet;             // best first
    std::optional<PictureKindScores> kinds;                       // nullopt: no classifier description
    std::optional<std::vector<platform::DetectedObject>> objects; // nullopt: no object detector
    std::optional<std::vector<platform::PersonDetection>> people; // nullopt: no person detector
    std::vector<platform::FaceBox> faces;                         // in the pixels of analysedSize
    QSize analysedSize;                                           // the decoded image the boxes refer to
    std::optional<float> drawing;                                 // nullopt: no drawing classifier
    QStringList textLines;
    double textShare = 0.0;
    ScreenEvidence screen;
};

} // namespace lumaro::vision
