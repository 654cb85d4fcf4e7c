// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/BoardSheetService.h"

#include "platform/Log.h"
#include "platform/XattrTagStore.h"
#include "platform/picture/PictureReader.h"
#include "vision/BoardPicture.h"
#include "vision/BoardSheetPainter.h"
#include "vision/IndexFolder.h"
#include "vision/VisionIndexNaming.h"
#include "vision/VisionMarkLoader.h"

#include <QDir>
#include <QFile>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

#include <memory>

namespace lumaro::vision {

using platform::Log;

namespace {

const QString kTagText = QString::fromLatin1(BoardSheetService::kTag);

QString dateRangeOf(const QList<BoardPicture>& pictures)
{
    QDate first, last;
    for (const BoardPicture& p : pictures) {
        if (!p.taken.isValid())
            continue;
        const QDate day = p.taken.date();
        if (!first.isValid() || day < first)
            first = day;
        if (!last.isValid() || day > last)
            last = day;
    }
    if (!first.isValid())
        return {};
    const QString from = first.toString(Qt::ISODate);
    return first == last ? from : from + QStringLiteral(" – ") + last.toString(Qt::ISODate);
}

QString countsOf(const QList<BoardPicture>& pictures)
{
    int rated = 0, picked = 0, rejected = 0, coloured = 0;
    for (const BoardPicture& p : pictures) {
        rated += p.stars > 0;
        picked += p.flag == platform::PickFlag::picked;
        rejected += p.flag == platform::PickFlag::rejected;
        coloured += !p.colours.isEmpty();
    }
    return QStringLiteral("%1 张 · %2 张有星级 · %3 张选用 · %4 张弃用 · %5 张有色标")
        .arg(pictures.size())
        .arg(rated)
        .arg(picked)
        .arg(rejected)
        .arg(coloured);
}

// "board_<stamp>_<key>", with "_2", "_3"… when a file of `_index` already starts with it.
QString freshBaseName(const QDir& index, const QString& stem)
{
    QString base = stem;
    for (int n = 2; !index.entryList({base + QLatin1Char('*')}, QDir::Files | QDir::Hidden).isEmpty(); ++n)
        base = stem + QLatin1Char('_') + QString::number(n);
    return base;
}

// Writes the pages it is given, and removes them all again unless the run is kept.
class PageFiles
{
public:
    explicit PageFiles(QString base) : m_base(std::move(base)) {}
    ~PageFiles()
    {
        if (!m_kept)
            for (const QString& path : m_paths)
                QFile::remove(path);
    }
    bool write(const QImage& page, QString* error)
    {
        const QString path =
            m_base + QStringLiteral("_p%1.jpg").arg(m_paths.size() + 1, 2, 10, QLatin1Char('0'));
        QSaveFile file(path);
        if (!file.open(QIODevice::WriteOnly) || !page.save(&file, "JPEG", BoardSheetService::kJpegQuality) ||
            !file.commit()) {
            *error = file.errorString();
            return false;
        }
        m_paths << path;
        return true;
    }
    QStringList keep()
    {
        m_kept = true;
        return m_paths;
    }

private:
    QString m_base;
    QStringList m_paths;
    bool m_kept = false;
};

// The PDF beside the pages: every page painted into it as well; written only when finished.
class PdfFile
{
public:
    PdfFile(const QString& path, PaperSize paper) : m_file(path), m_path(path)
    {
        if (!m_file.open(QIODevice::WriteOnly))
            return;
        m_writer = std::make_unique<QPdfWriter>(&m_file);
        m_writer->setResolution(BoardSheetLayout::kDpi);
        m_writer->setPageSize(QPageSize(paper == PaperSize::a4 ? QPageSize::A4 : QPageSize::Letter));
        m_writer->setPageMargins(QMarginsF());
        m_writer->setTitle(QStringLiteral("Lumaro board index"));
        m_writer->setCreator(QStringLiteral("Lumaro"));
    }
    bool isOpen() const { return bool(m_writer); }
    QString errorString() const { return m_file.errorString(); }
    QPainter& nextPage()
    {
        if (!m_painter)
            m_painter = std::make_unique<QPainter>(m_writer.get());
        else
            m_writer->newPage();
        return *m_painter;
    }
    bool finish()
    {
        if (m_painter)
            m_painter->end();
        return m_file.commit();
    }

private:
    QSaveFile m_file;
    QString m_path;
    std::unique_ptr<QPdfWriter> m_writer;
    std::unique_ptr<QPainter> m_painter;
};

} // namespace

BoardSheetService::BoardSheetService(platform::FileTagStore* tags)
    : m_tags(tags ? *tags : platform::XattrTagStore::shared())
{
}

BoardSheetResult BoardSheetService::run(const QString& folder, const QStringList& fileNames,
                                        const BoardSheetOptions& options) const
{
    BoardSheetResult result;
    const QString folderPath = QDir(folder).absolutePath();
    Log::line(kTagText, QStringLiteral("图像数量: ") + QString::number(fileNames.size()));
    if (IndexFolder::isBlocked(folderPath, kTagText)) {
        result.indexFolderRefused = true;
        return result;
    }
    const int total = int(fileNames.size()) * 2; // each picture's facts, then its thumbnail
    int done = 0;
    const auto step = [&] {
        if (options.progress)
            options.progress(++done, total);
    };
    const auto cancelled = [&] {
        if (!options.cancel || !options.cancel->load())
            return false;
        result.cancelled = true;
        Log::line(kTagText, QStringLiteral("已取消，未写入索引表"));
        return true;
    };
    const QString stamp = VisionIndexNaming::runStamp(QDateTime::currentDateTime());
    const std::optional<VisionMarks> marks = VisionMarkLoader::load(folderPath, kTagText);
    QList<BoardPicture> pictures;
    for (const QString& name : fileNames) {
        if (cancelled())
            return result;
        pictures << BoardPicture::read(folderPath, name, m_tags,
                                       marks ? marks->markByFileName : QHash<QString, QString>());
        step();
    }
    const BoardSheetLayout layout(options.paper, options.columns);
    const BoardHeader header{QDir(folderPath).dirName(), dateRangeOf(pictures), countsOf(pictures)};

    const std::optional<QString> indexFolder = IndexFolder::ensure(folderPath, kTagText);
    if (!indexFolder) {
        result.indexFolderRefused = true;
        return result;
    }
    const QDir index(*indexFolder);
    const QString base =
        index.filePath(freshBaseName(index, QStringLiteral("board_") + stamp + QLatin1Char('_') +
                                                VisionIndexNaming::folderKey(folderPath)));
    PageFiles pages(base);
    std::unique_ptr<PdfFile> pdf;
    if (options.pdf) {
        pdf = std::make_unique<PdfFile>(base + QStringLiteral(".pdf"), options.paper);
        if (!pdf->isOpen()) {
            result.error = pdf->errorString();
            Log::line(kTagText, QStringLiteral("保存失败: ") + result.error);
            return result;
        }
    }
    const int pageCount = layout.pageCount(int(pictures.size()));
    const int thumbnailSide = layout.thumbnailIn(layout.cell(0)).width();
    for (int page = 0; page < pageCount; ++page) {
        QList<BoardCell> cells;
        for (int i = page * layout.perPage();
             i < std::min<int>(pictures.size(), (page + 1) * layout.perPage()); ++i) {
            if (cancelled())
                return result;
            platform::DecodedPicture decoded = platform::PictureReader::read(
                {QDir(folderPath).filePath(pictures[i].fileName), thumbnailSide});
            result.undecodable += decoded.isNull();
            cells << BoardCell{pictures[i], std::move(decoded.image)};
            step();
        }
        QImage sheet(layout.pageSize(), QImage::Format_RGB32);
        sheet.fill(Qt::white);
        sheet.setDotsPerMeterX(int(BoardSheetLayout::kDpi / 0.0254));
        sheet.setDotsPerMeterY(int(BoardSheetLayout::kDpi / 0.0254));
        {
            QPainter painter(&sheet);
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            BoardSheetPainter::paintPage(painter, layout, header, cells, page + 1, pageCount);
        }
        if (!pages.write(sheet, &result.error)) {
            Log::line(kTagText, QStringLiteral("保存失败: ") + result.error);
            return result;
        }
        if (pdf) {
            QPainter& painter = pdf->nextPage();
            painter.setRenderHint(QPainter::SmoothPixmapTransform);
            BoardSheetPainter::paintPage(painter, layout, header, cells, page + 1, pageCount);
        }
    }
    if (pdf) {
        if (!pdf->finish()) {
            result.error = pdf->errorString();
            Log::line(kTagText, QStringLiteral("保存失败: ") + result.error);
            return result;
        }
        result.pdfPath = base + QStringLiteral(".pdf");
    }
    result.pictures = int(pictures.size());
    result.pagePaths = pages.keep();
    for (const QString& path : result.pagePaths)
        Log::line(kTagText, QStringLiteral("保存成功: ") + path);
    if (!result.pdfPath.isEmpty())
        Log::line(kTagText, QStringLiteral("保存成功: ") + result.pdfPath);
    return result;
}

} // namespace lumaro::vision
