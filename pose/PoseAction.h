// SPDX-License-Identifier: GPL-3.0-or-later
// The fixed vocabulary of twenty photographic actions (action_list_c01) onto which the pose verdicts map.
#pragma once

#include "pose/PoseValueLevel1Estimator.h"
#include "pose/PoseValueLevel2Estimator.h"

#include <QString>

#include <optional>
#include <vector>

namespace lumaro::pose {

// Table order; the raw value is the action's id.
enum class PoseAction {
    layread, teasit, squat, balance, sideway, tuck, perch, prop, recline, supine,
    walk, prone, stand, tread, side, knee, upkick, sit, lay, diverse,
};

enum class PoseActionCategory { actionListC01 };

// The seven basic actions the twenty are grouped under, in this order.
enum class PoseActionLevel1 { stand, squat, knee, lay, sit, supine, diverse };

QString rawValue(PoseAction action);
QString rawValue(PoseActionCategory category);
QString rawValue(PoseActionLevel1 level1);
std::optional<PoseAction> poseActionFromRawValue(const QString& id);

struct PoseActionRuleDefinition
{
    QString id;
    PoseActionCategory category = PoseActionCategory::actionListC01;
    PoseAction action = PoseAction::diverse;
    PoseActionLevel1 level1 = PoseActionLevel1::diverse;
    int order = 0;
    QString code;           // "C01-01" …
    QString displayName;    // "站立 Stand"
    QString summary;
    QString telemetryLabel; // "action_list_c01.stand"
    QString condition;      // the automatic rule, or the placeholder text for actions without one
};

// Constant, any thread.
const std::vector<PoseActionRuleDefinition>& actionListC01();
const PoseActionRuleDefinition& ruleDefinition(PoseAction action);

PoseAction poseActionFor(PoseValueLevel2Pose pose);
PoseAction poseActionFor(PoseValueLevel1Pose pose);

} // namespace lumaro::pose
