// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/OcrTextRecognizer.h"

#include "platform/Log.h"
#include "platform/vision/MatFromImage_p.h"
#include "platform/vision/OnnxNetwork_p.h"
#include "platform/vision/PaddleOcr_p.h"
#include "platform/vision/PageSkew_p.h"
#include "platform/vision/TesseractTextRecognizer.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <exception>

namespace lumaro::platform {

namespace {

bool hasLetterOrDigit(const QString& line)
{
    return std::any_of(line.begin(), line.end(), [](QChar c) { return c.isLetterOrNumber(); });
}

// The probabilities of the characters `kept` holds of `read` (which it is with some spaces taken out).
QList<float> keptConfidences(const QString& read, const QList<float>& confidences, const QString& kept)
{
    QList<float> out;
    qsizetype k = 0;
    for (qsizetype i = 0; i < read.size() && i < confidences.size() && k < kept.size(); ++i) {
        // Tidying changes a mark into its Chinese form ("," → "，") and drops spaces, nothing else.
        if (read[i] == kept[k] || QString(read[i]).normalized(QString::NormalizationForm_KC) == kept[k] ||
            QString(kept[k]).normalized(QString::NormalizationForm_KC) == read[i]) {
            out << confidences[i];
            ++k;
        }
    }
    return out.size() == kept.size() ? out : QList<float>{};
}

// Tesseract reads a page of Chinese less well than the line reader, and when it fails it fails whole lines
// ("价目表" → "MAX"): its reading is taken for pages in other scripts.
bool mostlyChinese(const QStringList& lines)
{
    qsizetype han = 0, letters = 0;
    for (const QString& line : lines) {
        for (QChar c : line) {
            if (!c.isLetter())
                continue;
            ++letters;
            han += c.script() == QChar::Script_Han;
        }
    }
    return 2 * han >= letters && han > 0;
}

// The detector's box hugs the letters; a little room around it keeps a line's last mark ("。", "，") and the
// strokes that stand out of it.
cv::RotatedRect withRoom(cv::RotatedRect box)
{
    const float room = 0.2f * std::min(box.size.width, box.size.height);
    box.size.width += room;
    box.size.height += room;
    return box;
}

double shareOf(const std::vector<cv::RotatedRect>& boxes, const cv::Size& picture)
{
    double area = 0;
    for (const cv::RotatedRect& box : boxes)
        area += double(box.size.width) * box.size.height;
    return std::min(1.0, area / std::max(1.0, double(picture.area())));
}

} // namespace

OcrTextRecognizer::OcrTextRecognizer(std::unique_ptr<detail::PaddleOcr> lines, PageReaderFactory makePages)
    : m_lines(std::move(lines)), m_makePages(std::move(makePages))
{
}

TesseractTextRecognizer* OcrTextRecognizer::pages()
{
    if (!m_pagesMade && m_makePages) {
        m_pages = m_makePages();
        m_pagesMade = true;
    }
    return m_pages.get();
}

OcrTextRecognizer::~OcrTextRecognizer() = default;

TextRecognition OcrTextRecognizer::recognize(const QImage& image)
{
    if (image.isNull())
        return {{}, QStringLiteral("空图像")};
    if (m_lines)
        return readLines(image);
    double level = 0;
    try {
        const cv::Mat bgr = detail::bgrMatFromImage(image);
        cv::Mat gray;
        cv::cvtColor(bgr, gray, cv::COLOR_BGR2GRAY);
        level = detail::skewFromProjection(gray);
    } catch (const std::exception& error) {
        return {{}, QString::fromUtf8(error.what())};
    }
    TesseractTextRecognizer* reader = pages();
    if (!reader)
        return {{}, QStringLiteral("文档文字识别不可用")};
    return reader->recognize(image, level, nullptr);
}

TextRecognition OcrTextRecognizer::readLine(const QImage& image)
{
    if (image.isNull())
        return {{}, QStringLiteral("空图像")};
    if (!m_lines)
        return recognize(image);
    TextRecognition result;
    try {
        const cv::Mat bgr = detail::bgrMatFromImage(image);
        const cv::RotatedRect whole(cv::Point2f(bgr.cols / 2.f, bgr.rows / 2.f),
                                    cv::Size2f(float(bgr.cols), float(bgr.rows)), 0.f);
        const detail::ReadLine line = m_lines->read(bgr, whole);
        const QString text = withoutCjkSpacing(line.text.trimmed());
        if (line.confidence >= kMinLineConfidence && hasLetterOrDigit(text)) {
            result.lines << text;
            result.characterConfidences << keptConfidences(line.text, line.characters, text);
            result.boxes << image.rect();
        }
    } catch (const std::exception& error) {
        return {{}, QString::fromUtf8(error.what())};
    }
    return result;
}

TextRecognition OcrTextRecognizer::readLines(const QImage& image)
{
    TextRecognition result;
    try {
        const cv::Mat bgr = detail::bgrMatFromImage(image);
        const std::vector<cv::RotatedRect> boxes = m_lines->detect(bgr);
        result.textShare = shareOf(boxes, bgr.size());
        if (boxes.empty())
            return result;
        if (int(boxes.size()) >= kPageLines && result.textShare >= kPageTextShare && pages()) {
            int confidence = 0;
            TextRecognition page = pages()->recognize(image, detail::skewFromLines(boxes), &confidence);
            if (page.error.isEmpty() && confidence >= kTrustedPageConfidence && !page.lines.isEmpty() &&
                !mostlyChinese(page.lines)) {
                page.textShare = result.textShare;
                return page;
            }
        }
        for (const std::vector<cv::RotatedRect>& row : detail::readingRows(boxes)) {
            bool rowHasLine = false;
            for (const cv::RotatedRect& box : row) {
                if (result.lines.size() >= kMaxLines)
                    return result;
                const detail::ReadLine line = m_lines->read(bgr, withRoom(box));
                const QString text = withoutCjkSpacing(line.text.trimmed());
                if (line.confidence < kMinLineConfidence || text.isEmpty())
                    continue;
                const cv::Rect cut = box.boundingRect() & cv::Rect(0, 0, bgr.cols, bgr.rows);
                const QRect bounds(cut.x, cut.y, cut.width, cut.height);
                const QList<float> confidences = keptConfidences(line.text, line.characters, text);
                if (hasLetterOrDigit(text)) {
                    result.lines << text;
                    result.characterConfidences << confidences;
                    result.boxes << bounds;
                    rowHasLine = true;
                } else if (rowHasLine) {
                    // A mark standing apart after the last word ("，" "。" at a line's end) gets a box of
                    // its own: it belongs to the line before it, and after Chinese takes the Chinese form.
                    const QString joined = result.lines.last() + text;
                    QList<float>& kept = result.characterConfidences.last();
                    result.lines.last() = withoutCjkSpacing(joined);
                    kept = keptConfidences(joined, kept + confidences, result.lines.last());
                    result.boxes.last() |= bounds;
                }
            }
        }
    } catch (const std::exception& error) {
        return {{}, QString::fromUtf8(error.what()), result.textShare};
    }
    return result;
}

namespace {

std::unique_ptr<detail::PaddleOcr> installedLineReader()
{
    const QString signal = QStringLiteral("照片与倾斜文字识别");
    const QString detector =
        detail::installedModel(signal, QStringLiteral("ocr/ch_PP-OCRv4_det_infer_cv46.onnx"));
    const QString recogniser =
        detail::installedModel(signal, QStringLiteral("ocr/ch_PP-OCRv4_rec_infer_cv46.onnx"));
    const QString keys = detail::installedModel(signal, QStringLiteral("ocr/ppocr_keys_v1.txt"));
    if (detector.isEmpty() || recogniser.isEmpty() || keys.isEmpty())
        return nullptr;
    return detail::PaddleOcr::load(detector, recogniser, keys);
}

} // namespace

std::unique_ptr<TextRecognizer> makeLineTextRecognizer()
{
    std::unique_ptr<detail::PaddleOcr> lines = installedLineReader();
    if (!lines)
        return nullptr;
    return std::make_unique<OcrTextRecognizer>(std::move(lines), nullptr);
}

std::unique_ptr<TextRecognizer> makeTextRecognizer()
{
    std::unique_ptr<detail::PaddleOcr> lines = installedLineReader();
    const auto makePages = [] {
        std::unique_ptr<TesseractTextRecognizer> pages = TesseractTextRecognizer::create();
        if (!pages)
            detail::reportMissingModel(QStringLiteral("文档文字识别"),
                                       QStringLiteral("tesseract-ocr-eng/chi-sim"));
        return pages;
    };
    if (lines)
        return std::make_unique<OcrTextRecognizer>(std::move(lines), makePages);
    // Without the line detector Tesseract is the only reader: it must be there from the start.
    std::unique_ptr<TesseractTextRecognizer> pages = makePages();
    if (!pages)
        return nullptr;
    auto made = std::make_shared<std::unique_ptr<TesseractTextRecognizer>>(std::move(pages));
    return std::make_unique<OcrTextRecognizer>(nullptr, [made] { return std::move(*made); });
}

} // namespace lumaro::platform
