// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/WatermarkIdentifier.h"

#include <QRegularExpression>

namespace lumaro::vision {

namespace {

// An ID line: a key ("ID", "UID", "号" with whatever platform name stands before it: 抖音号, 小红书号,
// 快手号) and an account of 4 to 24 Latin letters, digits, "_", "." and "-" holding at least one digit. "ID"
// is upper-case and not the end of a longer word ("VALID: 1234", "paid 2000"), so running text is not read as
// one; an account of letters alone is left unread rather than risk sorting by a word.
const QRegularExpression& numberLine()
{
    static const QRegularExpression pattern(
        QStringLiteral("(?:(?<![A-Za-z])U?I[Dd](?![A-Za-z])|号)\\s*:?\\s*"
                       "((?=[A-Za-z_.\\-]*[0-9])[A-Za-z0-9][A-Za-z0-9_.\\-]{3,23})(?![A-Za-z0-9_])"),
        QRegularExpression::UseUnicodePropertiesOption);
    return pattern;
}

// A handle: "@" and a name of letters (any script), digits, "_", "." and "-", 2 to 30 characters. An "@"
// inside a word is an e-mail address, not a handle. A name followed by a space and more Latin letters or
// digits ("@yuki 0412", "@光影 Studio") is a name whose "_" or "." the reader saw as a space: which one is
// not known, and the part before the space is some other poster's name, so the line gives no handle.
const QRegularExpression& handle()
{
    static const QRegularExpression pattern(
        QStringLiteral(
            "(?<![\\p{L}\\p{N}_.])@\\s?([\\p{L}\\p{N}_][\\p{L}\\p{N}_.\\-]{1,29}+)(?!\\s+[A-Za-z0-9_])"),
        QRegularExpression::UseUnicodePropertiesOption);
    return pattern;
}

QString trimmedName(QString name)
{
    while (name.endsWith(QLatin1Char('.')) || name.endsWith(QLatin1Char('-')))
        name.chop(1);
    return name;
}

} // namespace

std::optional<WatermarkIdentifier> WatermarkIdentifier::find(const QString& line)
{
    // NFKC makes "＠" "@", "：" ":" and full-width letters and digits plain.
    const QString text = line.normalized(QString::NormalizationForm_KC).trimmed();
    // Platforms take handles and account names whatever their case ("@Lily_Chen" is "@lily_chen"), and a
    // small stamp's capitals are what a reader most often gets wrong: one case, one poster.
    if (const QRegularExpressionMatch match = numberLine().match(text); match.hasMatch())
        return WatermarkIdentifier{Kind::number, trimmedName(match.captured(1)).toLower(), line.trimmed()};
    if (const QRegularExpressionMatch match = handle().match(text); match.hasMatch()) {
        const QString name = trimmedName(match.captured(1)).toLower();
        if (name.size() >= 2)
            return WatermarkIdentifier{Kind::handle, QLatin1Char('@') + name, line.trimmed()};
    }
    return std::nullopt;
}

QString WatermarkIdentifier::folderName(const QString& identifier)
{
    QString name;
    for (const QChar c : identifier)
        name += c == QLatin1Char('/') || c.category() == QChar::Other_Control ? QLatin1Char('_') : c;
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String(".."))
        name = QStringLiteral("_") + name;
    return name;
}

QString WatermarkIdentifier::kindText(Kind kind)
{
    return kind == Kind::handle ? QStringLiteral("handle") : QStringLiteral("id");
}

} // namespace lumaro::vision
