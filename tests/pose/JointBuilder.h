// SPDX-License-Identifier: GPL-3.0-or-later
// Joint dictionaries written the way a test reads best: {"left_upLeg", 0.4, 0.5}, …
#pragma once

#include "platform/JointSample.h"

#include <initializer_list>
#include <optional>

namespace lumaro::testing {

struct JointSpec
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

inline platform::JointDictionary joints(std::initializer_list<JointSpec> specs)
{
    platform::JointDictionary dictionary;
    for (const JointSpec& spec : specs) {
        const QString key = QString::fromLatin1(spec.key);
        dictionary.insert(key, {key, spec.located ? std::optional<QPointF>(QPointF(spec.x, spec.y)) : std::nullopt,
                                spec.confidence});
    }
    return dictionary;
}

} // namespace lumaro::testing
