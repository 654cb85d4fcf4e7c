// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/vision/TextRecognizer.h"

#include <QHash>
#include <QRegularExpression>

namespace lumaro::platform {

namespace {

bool isHan(QChar c)
{
    return c.script() == QChar::Script_Han;
}

// The nearest character that is not a space before `at` (-1 for none) or after it (size for none).
qsizetype previousInk(const QString& line, qsizetype at)
{
    while (--at >= 0 && line[at].isSpace()) {
    }
    return at;
}

qsizetype nextInk(const QString& line, qsizetype at)
{
    while (++at < line.size() && line[at].isSpace()) {
    }
    return at;
}

// The reader's dictionary has ASCII punctuation only, so a Chinese "时间：" comes out "时间 :". A mark
// after a Han character is the Chinese one; an opening bracket before one too, and a full stop only where
// it ends the sentence (never inside "2.0").
QString chinesePunctuation(const QString& line)
{
    static const QHash<QChar, QChar> fullWidth{
        {u':', u'\uFF1A'}, {u',', u'\uFF0C'}, {u';', u'\uFF1B'}, {u'!', u'\uFF01'},
        {u'?', u'\uFF1F'}, {u'(', u'\uFF08'}, {u')', u'\uFF09'}, {u'.', u'\u3002'},
    };
    QString out = line;
    for (qsizetype i = 0; i < out.size(); ++i) {
        const auto mark = fullWidth.constFind(out[i]);
        if (mark == fullWidth.cend())
            continue;
        const qsizetype before = previousInk(out, i);
        const qsizetype after = nextInk(out, i);
        const bool afterHan = before >= 0 && isHan(out[before]);
        const bool beforeHan = after < out.size() && isHan(out[after]);
        bool chinese = afterHan;
        if (out[i] == u'(')
            chinese = afterHan || beforeHan;
        else if (out[i] == u'.')
            chinese = afterHan && (beforeHan || after == out.size());
        if (chinese)
            out[i] = *mark;
    }
    return out;
}

} // namespace

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
    QString tidy = chinesePunctuation(line);
    tidy.replace(gap, QString());
    tidy.replace(beforePunctuation, QString());
    tidy.replace(afterPunctuation, QString());
    return tidy;
}

} // namespace lumaro::platform
