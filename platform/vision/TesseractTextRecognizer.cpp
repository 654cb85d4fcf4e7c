// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/TesseractTextRecognizer.h"

#include "platform/ForeignCall.h"
#include "platform/Log.h"
#include "platform/picture/FittedSize.h"
#include "platform/vision/PageSkew_p.h"

#include <QRegularExpression>

#include <tesseract/baseapi.h>

#include <opencv2/core.hpp>

#include <memory>

// The one call of libgomp's API used here; its header is gcc's, out of clang's sight.
extern "C" void omp_set_max_active_levels(int levels);

namespace lumaro::platform {

struct TesseractTextRecognizer::Engine
{
    tesseract::TessBaseAPI api;
};

namespace {

const QString kTag = QStringLiteral("VISION_INDEX");

bool hasLetterOrDigit(const QString& line)
{
    for (const QChar c : line) {
        if (c.isLetterOrNumber())
            return true;
    }
    return false;
}

} // namespace

TesseractTextRecognizer::TesseractTextRecognizer(std::unique_ptr<Engine> engine) : m_engine(std::move(engine))
{
}

TesseractTextRecognizer::~TesseractTextRecognizer()
{
    m_engine->api.End();
}

std::unique_ptr<TesseractTextRecognizer> TesseractTextRecognizer::create(const QString& languages)
{
    auto engine = std::make_unique<Engine>();
    const int status = guardedForeignCall(
        [&] { return engine->api.Init(nullptr, languages.toUtf8().constData(), tesseract::OEM_LSTM_ONLY); },
        [](const QString&) { return -1; });
    if (status != 0) {
        Log::line(kTag, QStringLiteral("❌ 文字识别引擎初始化失败: ") + languages);
        return nullptr;
    }
    engine->api.SetPageSegMode(tesseract::PSM_AUTO);
    // The engine reports its resolution guess for every picture on standard error.
    engine->api.SetVariable("debug_file", "/dev/null");
    return std::unique_ptr<TesseractTextRecognizer>(new TesseractTextRecognizer(std::move(engine)));
}

TextRecognition TesseractTextRecognizer::recognize(const QImage& image)
{
    return recognize(image, 0.0, nullptr);
}

TextRecognition TesseractTextRecognizer::recognize(const QImage& image, double levelDegrees,
                                                   int* meanConfidence)
{
    return guardedForeignCall([&] { return recognizeLines(image, levelDegrees, meanConfidence); },
                              [](const QString& reason) {
                                  return TextRecognition{{}, reason};
                              });
}

TextRecognition TesseractTextRecognizer::recognizeLines(const QImage& image, double levelDegrees,
                                                        int* meanConfidence)
{
    if (image.isNull())
        return {{}, QStringLiteral("空图像")};
    QImage gray = image;
    if (std::max(gray.width(), gray.height()) > maxSide())
        gray =
            gray.scaled(fittedSize(gray.size(), maxSide()), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    gray = gray.convertToFormat(QImage::Format_Grayscale8);
    cv::Mat page;
    try {
        const cv::Mat view(gray.height(), gray.width(), CV_8UC1, const_cast<uchar*>(gray.constBits()),
                           size_t(gray.bytesPerLine()));
        page = detail::levelled(view, levelDegrees).clone();
    } catch (const std::exception& error) {
        return {{}, QString::fromUtf8(error.what())};
    }

    // The workers of a run already keep every core busy: the engine's OpenMP teams only took turns with them
    // and spun while idle, about a tenth of a run's CPU time. OpenMP reads OMP_THREAD_LIMIT once, when the
    // library loads, so the engine is kept to the calling thread here, where it reads.
    omp_set_max_active_levels(0);
    tesseract::TessBaseAPI& api = m_engine->api;
    api.SetImage(page.data, page.cols, page.rows, 1, int(page.step));
    if (api.Recognize(nullptr) != 0) {
        api.Clear();
        return {{}, QStringLiteral("Tesseract 识别失败")};
    }
    if (meanConfidence)
        *meanConfidence = api.MeanTextConf();
    TextRecognition result;
    std::unique_ptr<tesseract::ResultIterator> it(api.GetIterator());
    if (it) {
        do {
            if (it->Confidence(tesseract::RIL_TEXTLINE) < float(minimumConfidence()))
                continue;
            const std::unique_ptr<char[]> text(it->GetUTF8Text(tesseract::RIL_TEXTLINE));
            if (!text)
                continue;
            const QString line = withoutCjkSpacing(QString::fromUtf8(text.get()).trimmed());
            if (!line.isEmpty() && hasLetterOrDigit(line))
                result.lines << line;
        } while (it->Next(tesseract::RIL_TEXTLINE));
    }
    api.Clear();
    return result;
}

} // namespace lumaro::platform
