// SPDX-License-Identifier: GPL-3.0-or-later
#include "vision/CategoryKey.h"

namespace lumaro::vision {

QString rawValue(CategoryKey key)
{
    switch (key) {
    case CategoryKey::people: return QStringLiteral("PEOPLE_WORDS");
    case CategoryKey::clothing: return QStringLiteral("CLOTHING_WORDS");
    case CategoryKey::furniture: return QStringLiteral("FURNITURE_WORDS");
    case CategoryKey::structure: return QStringLiteral("STRUCTURE_WORDS");
    case CategoryKey::documents: return QStringLiteral("DOCUMENTS_WORDS");
    case CategoryKey::electronics: return QStringLiteral("ELECTRONICS_WORDS");
    case CategoryKey::outdoor: return QStringLiteral("OUTDOOR_WORDS");
    case CategoryKey::tools: return QStringLiteral("TOOLS_WORDS");
    case CategoryKey::screenshot: return QStringLiteral("SCREENSHOT_WORDS");
    case CategoryKey::illustration: return QStringLiteral("ILLUSTRATION_WORDS");
    case CategoryKey::none: return QStringLiteral("NONE_WORDS");
    }
    return {};
}

} // namespace lumaro::vision
