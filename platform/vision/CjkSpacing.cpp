// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/TextRecognizer.h"

#include <QRegularExpression>

namespace lumaro::platform {

QString withoutCjkSpacing(const QString& line)
{
    // Han characters, CJK symbols and punctuation (U+3000–303F) and full-width forms (U+FF00–FFEF).
    static const QString cjk =
        QStringLiteral("[\\p{Han}\\x{3001}-\\x{303F}\\x{FF01}-\\x{FF60}\\x{2018}-\\x{201D}\\x{2026}]");
    static const QRegularExpression gap(QStringLiteral("(?<=%1)\\s+(?=%1)").arg(cjk));
    static const QRegularExpression beforePunctuation(
        QStringLiteral("\\s+(?=[\\x{3001}-\\x{303F}\\x{FF01}-\\x{FF60}])"));
    static const QRegularExpression afterPunctuation(
        QStringLiteral("(?<=[\\x{3001}\\x{3002}\\x{FF0C}\\x{FF1A}\\x{FF1B}\\x{FF01}\\x{FF1F}])\\s+"));
    QString tidy = line;
    tidy.replace(gap, QString());
    tidy.replace(beforePunctuation, QString());
    tidy.replace(afterPunctuation, QString());
    return tidy;
}

} // namespace lumaro::platform
