// SPDX-License-Identifier: GPL-3.0-or-later
// Joint dictionaries written the way a test reads best: {"left_upLeg", 0.4, 0.5}, …
#pragma once

#include "platform/JointSample.h"

#include <initializer_list>
#include <optional>

namespace lumaro::testing {

struct JointRow
{
    const char* key;
    double x = 0.0;
    double y = 0.0;
    float confidence = 0.9f;
    bool located = true;
};

inline platform::JointSample sample(const char* name, double x, double y, float confidence = 0.9f)
{
    return {QString::fromLatin1(name), QPointF(x, y), confidence};
}

inline platform::JointSample unlocated(const char* name, float confidence = 0.1f)
{
    return {QString::fromLatin1(name), std::nullopt, confidence};
}

inline platform::JointDictionary joints(std::initializer_list<JointRow> rows)
{
    platform::JointDictionary dictionary;
    for (const JointRow& row : rows) {
        const QString key = QString::fromLatin1(row.key);
        dictionary.insert(key, {key, row.located ? std::optional<QPointF>(QPointF(row.x, row.y)) : std::nullopt,
                                row.confidence});
    }
    return dictionary;
}

} // namespace lumaro::testing
