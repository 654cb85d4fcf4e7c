// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/state/PictureFilter.h"

#include <QStringList>

namespace lumaro::browse {

namespace {

QString colourName(const QString& colour)
{
    static const QStringList names{QStringLiteral("红色"), QStringLiteral("黄色"), QStringLiteral("橙色"),
                                   QStringLiteral("绿色"), QStringLiteral("蓝色"), QStringLiteral("紫色")};
    const qsizetype at = annotationColors().indexOf(colour);
    return at < 0 ? colour : names.at(at);
}

} // namespace

bool PictureFilter::accepts(const platform::PictureMarks& marks, const ImageAnnotation& annotation) const
{
    using platform::PickFlag;
    if (picksOnly && marks.flag != PickFlag::picked)
        return false;
    if (hideRejects && marks.flag == PickFlag::rejected)
        return false;
    if (minStars > 0 && marks.stars < minStars)
        return false;
    // A colour counts whether it is a file tag or only a label of the picture's XMP.
    if (!colour.isEmpty() && !annotation.colors.contains(colour) && !marks.colours.contains(colour))
        return false;
    return true;
}

QString PictureFilter::description() const
{
    QStringList parts;
    if (picksOnly)
        parts << QStringLiteral("仅精选");
    if (minStars > 0)
        parts << QStringLiteral("≥%1 星").arg(minStars);
    if (!colour.isEmpty())
        parts << colourName(colour);
    if (hideRejects)
        parts << QStringLiteral("隐藏废片");
    return parts.join(QStringLiteral(" · "));
}

PictureFilter PictureFilter::withPicksToggled() const
{
    PictureFilter next = *this;
    next.picksOnly = !picksOnly;
    return next;
}

PictureFilter PictureFilter::withRejectsToggled() const
{
    PictureFilter next = *this;
    next.hideRejects = !hideRejects;
    return next;
}

PictureFilter PictureFilter::withNextMinStars() const
{
    PictureFilter next = *this;
    next.minStars = (minStars + 1) % 6;
    return next;
}

PictureFilter PictureFilter::withNextColour() const
{
    PictureFilter next = *this;
    const QStringList& colours = annotationColors();
    const qsizetype at = colours.indexOf(colour);
    next.colour = at + 1 < colours.size() ? colours.at(at + 1) : QString();
    return next;
}

} // namespace lumaro::browse
