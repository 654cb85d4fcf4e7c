// SPDX-License-Identifier: GPL-3.0-or-later
// What the analysis found in one picture.
#pragma once

#include <QString>
#include <QStringList>

namespace lumaro::vision {

struct VisionRecognitionResult
{
    QString fileName; // last path component
    QString filePath; // full path
    QStringList recognizedObjects;
    QStringList recognizedText;
    QStringList sceneClassification; // the same labels as recognizedObjects, by design
    double confidence = 0.0;         // half the mean confidence of the kept labels; 0 without labels
    int pixelWidth = 0;
    int pixelHeight = 0;
    QString classificationMark;
};

} // namespace lumaro::vision
