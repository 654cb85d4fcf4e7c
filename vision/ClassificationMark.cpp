// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/ClassificationMark.h"

namespace lumaro::vision {

const std::array<QString, kClassificationMarkCount>& allMarkTexts()
{
    static const std::array<QString, kClassificationMarkCount> texts{
        QStringLiteral("MARK_PEOPLE"),          QStringLiteral("MARK_PEOPLE_PORTRAIT"),
        QStringLiteral("MARK_PEOPLE_SCREENSHOT"), QStringLiteral("MARK_ILLUSTRATION"),
        QStringLiteral("MARK_ILLUSTRATION_PEOPLE"), QStringLiteral("MARK_DOCUMENTS"),
        QStringLiteral("MARK_DOCUMENTS_LONG"),  QStringLiteral("MARK_DOCUMENTS_SCREENSHOT"),
        QStringLiteral("MARK_DOCUMENTS_TICKET"), QStringLiteral("MARK_SCREENSHOT"),
        QStringLiteral("MARK_STRUCTURE"),       QStringLiteral("MARK_OUTDOOR"),
        QStringLiteral("MARK_ELECTRONICS"),     QStringLiteral("MARK_FURNITURE"),
        QStringLiteral("MARK_TOOLS"),           QStringLiteral("MARK_UNTAG"),
    };
    return texts;
}

QString markText(ClassificationMark mark)
{
    return allMarkTexts()[static_cast<size_t>(mark)];
}

} // namespace lumaro::vision
