// SPDX-License-Identifier: GPL-3.0-or-later
// PP-OCRv4 text detection (DB) and line recognition (CTC) through cv::dnn; private to the text backends.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <opencv2/core.hpp>
#include <opencv2/dnn.hpp>

#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace lumaro::platform::detail {

struct ReadLine
{
    QString text;
    float confidence = 0.f;  // mean of the characters' probabilities
    QList<float> characters; // each character's probability, one per UTF-16 unit of `text`
};

// Each instance is used by one worker at a time; the networks behind it are shared by all instances alive
// (each net guarded by its own lock), since the detector's maps at page size are the largest memory of the
// whole analysis: two workers then hold one set, and the set goes when the last instance does. Works around
// two faults of OpenCV 4.6 with these graphs: a detector net returns empty maps once it has run at another
// input size, so one detector net takes every picture in one square shape (and another every strip); the
// recogniser's width is fixed when the graph is imported, so one net is kept per width bucket (two).
class PaddleOcr
{
public:
    static std::unique_ptr<PaddleOcr> load(const QString& detectorPath, const QString& recogniserPath,
                                           const QString& keysPath);
    ~PaddleOcr();

    // Text line boxes in the picture's pixels, in no particular order (readingRows() orders them). Throws
    // cv::Exception.
    std::vector<cv::RotatedRect> detect(const cv::Mat& bgr);
    // The detector input a picture of this size is fitted into: the square page, or the strip for a picture
    // at least three times as wide as tall.
    static cv::Size detectorInput(cv::Size picture);
    // The line inside `box`. Throws cv::Exception.
    ReadLine read(const cv::Mat& bgr, const cv::RotatedRect& box);

    struct Networks;

private:
    PaddleOcr(std::shared_ptr<Networks> networks, QStringList keys);
    cv::Mat detectorForward(cv::Size input, const cv::Mat& blob);
    cv::Mat forward(int recogniserWidth, const cv::Mat& blob);
    // The recogniser's scores [steps, classes] for a line scaled to its input height, padded to `width`.
    cv::Mat logitsOf(const cv::Mat& strip, int width);
    // The same for a line of any width, read chunk by chunk.
    cv::Mat lineLogits(const cv::Mat& strip);

    std::shared_ptr<Networks> m_networks;
    QStringList m_keys; // index 0 = CTC blank, last = space
};

} // namespace lumaro::platform::detail
