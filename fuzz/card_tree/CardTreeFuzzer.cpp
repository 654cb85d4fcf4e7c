// SPDX-License-Identifier: GPL-3.0-or-later
// A memory card's folder tree as any camera (or a damaged card) may lay it out, recognised, counted and
// scanned for import. Each input line is one entry: a relative path, a folder when it ends with "/", else a
// file whose content follows a tab.
#include "cards/CardReco.h"
#include "cards/CardScanner.h"
#include "fuzz/FuzzScratch.h"

#include <QDir>

using namespace lumaro;

namespace {

constexpr int kMaxEntries = 48;
constexpr int kMaxDepth = 6;

// Keeps the entry inside the card: no empty, "." or ".." components, bounded depth.
QString safeRelativePath(const QString& raw)
{
    QStringList parts;
    for (const QString& part : raw.split(QLatin1Char('/'))) {
        if (part.isEmpty() || part == QStringLiteral(".") || part == QStringLiteral(".."))
            continue;
        parts.append(part.left(64));
    }
    if (parts.size() > kMaxDepth)
        parts = parts.mid(0, kMaxDepth);
    return parts.join(QLatin1Char('/'));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    fuzz::FuzzScratch::clear();
    const QString card = fuzz::FuzzScratch::path(QStringLiteral("card"));
    QDir().mkpath(card);
    const QList<QByteArray> lines = fuzz::bytesOf(data, size).split('\n');
    for (qsizetype i = 0; i < lines.size() && i < kMaxEntries; ++i) {
        const QByteArray& line = lines.at(i);
        const qsizetype tab = line.indexOf('\t');
        const QString raw = QString::fromUtf8(tab < 0 ? line : line.left(tab));
        const QString relative = safeRelativePath(raw);
        if (relative.isEmpty())
            continue;
        if (raw.endsWith(QLatin1Char('/')))
            QDir(card).mkpath(relative);
        else if (!QFileInfo(card + QLatin1Char('/') + relative).isDir())
            fuzz::FuzzScratch::write(QStringLiteral("card/") + relative,
                                     tab < 0 ? QByteArray() : line.mid(tab + 1));
    }

    const auto recognition = cards::CardReco::recognize(card);
    for (cards::CameraType type :
         {cards::CameraType::canonR, cards::CameraType::canonIXUS, cards::CameraType::unknown})
        (void)cards::CardReco::statistics(card, type);
    (void)cards::CardReco::firstPicture(card);
    (void)cards::CardScanner::scan(card);
    (void)recognition;
    return 0;
}
