// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/TesseractTextRecognizer.h"

#include "platform/ForeignCall.h"
#include "platform/Log.h"
#include "platform/picture/FittedSize.h"

#include <QRegularExpression>

#include <tesseract/baseapi.h>

#include <memory>
#include <mutex>

namespace lumaro::platform {

struct TesseractTextRecognizer::Engine
{
    tesseract::TessBaseAPI api;
};

namespace {

const QString kTag = QStringLiteral("VISION_INDEX");

// Tesseract writes a space between neighbouring Chinese characters; a reader expects none.
QString withoutSpacesBetweenHan(QString line)
{
    static const QRegularExpression gap(QStringLiteral("(?<=\\p{Han})\\s+(?=\\p{Han})"));
    return line.replace(gap, QString());
}

bool hasLetterOrDigit(const QString& line)
{
    for (const QChar c : line) {
        if (c.isLetterOrNumber())
            return true;
    }
    return false;
}

} // namespace

TesseractTextRecognizer::TesseractTextRecognizer(std::unique_ptr<Engine> engine)
    : m_engine(std::move(engine))
{
}

TesseractTextRecognizer::~TesseractTextRecognizer()
{
    m_engine->api.End();
}

std::unique_ptr<TesseractTextRecognizer> TesseractTextRecognizer::create(const QString& languages)
{
    // Each worker runs its own engine, so the engine's own OpenMP threads would only fight them for the cores.
    static std::once_flag limitThreads;
    std::call_once(limitThreads, [] {
        if (qEnvironmentVariableIsEmpty("OMP_THREAD_LIMIT"))
            qputenv("OMP_THREAD_LIMIT", "1");
    });
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
    return guardedForeignCall([&] { return recognizeLines(image); },
                              [](const QString& reason) {
                                  return TextRecognition{{}, reason};
                              });
}

TextRecognition TesseractTextRecognizer::recognizeLines(const QImage& image)
{
    if (image.isNull())
        return {{}, QStringLiteral("空图像")};
    QImage gray = image;
    if (std::max(gray.width(), gray.height()) > maxSide())
        gray =
            gray.scaled(fittedSize(gray.size(), maxSide()), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    gray = gray.convertToFormat(QImage::Format_Grayscale8);

    tesseract::TessBaseAPI& api = m_engine->api;
    api.SetImage(gray.constBits(), gray.width(), gray.height(), 1, int(gray.bytesPerLine()));
    if (api.Recognize(nullptr) != 0) {
        api.Clear();
        return {{}, QStringLiteral("Tesseract 识别失败")};
    }
    TextRecognition result;
    std::unique_ptr<tesseract::ResultIterator> it(api.GetIterator());
    if (it) {
        do {
            if (it->Confidence(tesseract::RIL_TEXTLINE) < float(minimumConfidence()))
                continue;
            const std::unique_ptr<char[]> text(it->GetUTF8Text(tesseract::RIL_TEXTLINE));
            if (!text)
                continue;
            const QString line = withoutSpacesBetweenHan(QString::fromUtf8(text.get()).trimmed());
            if (!line.isEmpty() && hasLetterOrDigit(line))
                result.lines << line;
        } while (it->Next(tesseract::RIL_TEXTLINE));
    }
    api.Clear();
    return result;
}

std::unique_ptr<TextRecognizer> makeTextRecognizer()
{
    static std::once_flag reported;
    if (auto recognizer = TesseractTextRecognizer::create())
        return recognizer;
    std::call_once(reported, [] { Log::line(kTag, QStringLiteral("⚠️ 文字识别不可用 (需要 tesseract-ocr-eng 和 tesseract-ocr-chi-sim)")); });
    return nullptr;
}

} // namespace lumaro::platform
