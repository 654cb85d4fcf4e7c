// SPDX-License-Identifier: GPL-3.0-or-later
// The sixteen category marks a picture can be given, and the open-ended "MARK_DIVERSE_" prefix.
#pragma once

#include <QString>

#include <array>

namespace lumaro::vision {

enum class ClassificationMark {
    people,
    peoplePortrait,
    peopleScreenshot,
    illustration,
    illustrationPeople,
    documents,
    documentsLong,
    documentsScreenshot,
    documentsTicket,
    screenshot,
    structure,
    outdoor,
    electronics,
    furniture,
    tools,
    untag,
};

inline constexpr int kClassificationMarkCount = 16;

// The stored text ("MARK_PEOPLE", …, "MARK_UNTAG").
QString markText(ClassificationMark mark);
// Every mark's text in the order above.
const std::array<QString, kClassificationMarkCount>& allMarkTexts();

inline const QString kDiverseMarkPrefix = QStringLiteral("MARK_DIVERSE_");

} // namespace lumaro::vision
