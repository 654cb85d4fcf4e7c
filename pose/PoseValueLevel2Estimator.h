// SPDX-License-Identifier: GPL-3.0-or-later
// The second layer of pose naming: refines stand/sit/diverse with the shanks, ankles, face and arm joints and,
// for reading poses, the picture's vision tags.
#pragma once

#include "pose/ConditionDirection.h"
#include "pose/PoseBodySide.h"
#include "pose/PoseValueLevel1Estimator.h"

#include <QStringList>

#include <map>
#include <optional>

namespace lumaro::pose {

// The prefix names the level-1 verdict under which each case can arise.
enum class PoseValueLevel2Pose {
    stand,
    standKnee,
    standTread,
    standWalk,
    standBalance,
    sitSquat,
    sitUpkick,
    sitProne,
    sitLay,
    diverseLayread,
};

QString rawValue(PoseValueLevel2Pose pose);

struct KneeAnklePair
{
    PoseBodySide side = PoseBodySide::left;
    platform::JointSample knee;
    platform::JointSample ankle;
};

struct PoseValueLevel2Result
{
    PoseValueLevel2Pose pose = PoseValueLevel2Pose::stand;
    QString matchedCondition;
    std::map<PoseBodySide, ConditionDirectionResult> kneeAnkleEvaluations; // filled by the stand rules
    std::optional<ConditionDirectionResult> crossDirectionResult;         // left ankle → right ankle
    std::optional<double> hipWidth;
    std::optional<double> crossWidth;
    QString reason;
};

// Pure, any thread. Stand always yields a result (plain stand when the straddle cannot be judged or the feet
// are crossed); sit and diverse may yield none, in which case the caller keeps the level-1 verdict.
// `visionTags` is nullopt when the picture has no index entry.
class PoseValueLevel2Estimator
{
public:
    // A tag names reading matter when its lower-cased text contains "book" or "material" ("Notebook" counts).
    static bool isReadingTag(const QString& tag);
    static std::vector<KneeAnklePair> kneeAnklePairs(const platform::JointDictionary& joints);

    std::optional<PoseValueLevel2Result> evaluate(const PoseValueLevel1Result& level1,
                                                  const platform::JointDictionary& joints,
                                                  const std::optional<QStringList>& visionTags) const;

private:
    static PoseValueLevel2Result standRules(const PoseValueLevel1Result& level1,
                                            const platform::JointDictionary& joints);
    static PoseValueLevel2Result straddleRule(const platform::JointDictionary& joints,
                                              PoseValueLevel2Result result);
    static std::optional<PoseValueLevel2Result> sitRules(const platform::JointDictionary& joints,
                                                         const std::optional<QStringList>& visionTags);
};

} // namespace lumaro::pose
