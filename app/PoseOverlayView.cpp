// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/PoseOverlayView.h"

#include <QPainter>
#include <QPainterPath>

#include <array>
#include <utility>

namespace lumaro::app {

namespace {

constexpr std::array<std::pair<const char*, const char*>, 14> kBones{{
    {"left_shoulder", "right_shoulder"}, {"left_shoulder", "left_forearm"}, {"left_forearm", "left_hand"},
    {"right_shoulder", "right_forearm"}, {"right_forearm", "right_hand"},   {"left_shoulder", "left_upLeg"},
    {"right_shoulder", "right_upLeg"},   {"left_upLeg", "right_upLeg"},     {"left_upLeg", "left_leg"},
    {"left_leg", "left_foot"},           {"right_upLeg", "right_leg"},      {"right_leg", "right_foot"},
    {"left_eye", "right_eye"},           {"left_ear", "right_ear"},
}};

const std::array<QColor, 5> kPersonColours{QColor(0, 200, 255), QColor(255, 170, 0), QColor(120, 230, 90),
                                            QColor(255, 90, 200), QColor(240, 240, 80)};

// The segments whose relation decided the verdicts shown.
std::vector<std::pair<QPointF, QPointF>> decidingSegments(const pose::PersonPose& person)
{
    std::vector<std::pair<QPointF, QPointF>> segments;
    if (person.level1.matchedDirection)
        segments.emplace_back(person.level1.matchedDirection->pointA, person.level1.matchedDirection->pointB);
    if (!person.level2)
        return segments;
    const pose::PoseValueLevel2Result& second = *person.level2;
    if (second.pose == pose::PoseValueLevel2Pose::standKnee && person.level1.matchedSide) {
        const auto shank = second.kneeAnkleEvaluations.find(*person.level1.matchedSide);
        if (shank != second.kneeAnkleEvaluations.end())
            segments.emplace_back(shank->second.pointA, shank->second.pointB);
    }
    if (second.pose == pose::PoseValueLevel2Pose::standTread) {
        for (const auto& [side, thigh] : person.level1.pairEvaluations)
            segments.emplace_back(thigh.pointA, thigh.pointB);
    }
    if (second.crossDirectionResult)
        segments.emplace_back(second.crossDirectionResult->pointA, second.crossDirectionResult->pointB);
    return segments;
}

} // namespace

PoseOverlayView::PoseOverlayView(QWidget* parent)
    : QWidget(parent)
{
    setMinimumSize(160, 160);
}

void PoseOverlayView::show(const QImage& picture, std::vector<pose::AnalysedPerson> people)
{
    m_picture = picture;
    m_people = std::move(people);
    update();
}

void PoseOverlayView::clear()
{
    m_picture = {};
    m_people.clear();
    update();
}

void PoseOverlayView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().window());
    if (m_picture.isNull())
        return;
    const QSize fitted = m_picture.size().scaled(size(), Qt::KeepAspectRatio);
    const QRectF target(QPointF((width() - fitted.width()) / 2.0, (height() - fitted.height()) / 2.0), fitted);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, m_picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto onScreen = [&target](QPointF normalised) {
        return QPointF(target.left() + normalised.x() * target.width(),
                       target.top() + (1.0 - normalised.y()) * target.height());
    };

    for (std::size_t i = 0; i < m_people.size(); ++i) {
        const pose::PersonPose& person = m_people[i].pose;
        const QColor colour = kPersonColours[i % kPersonColours.size()];
        painter.setPen(QPen(colour, 1.5));
        for (const auto& [from, to] : kBones) {
            const auto a = person.joints.value(QString::fromLatin1(from)).location;
            const auto b = person.joints.value(QString::fromLatin1(to)).location;
            if (a && b)
                painter.drawLine(onScreen(*a), onScreen(*b));
        }
        painter.setPen(QPen(colour.lighter(130), 5.0, Qt::SolidLine, Qt::RoundCap));
        for (const auto& [a, b] : decidingSegments(person))
            painter.drawLine(onScreen(a), onScreen(b));
        painter.setPen(QPen(Qt::black, 1.0));
        painter.setBrush(colour);
        for (const platform::JointSample& joint : person.joints) {
            if (joint.location)
                painter.drawEllipse(onScreen(*joint.location), 3.5, 3.5);
        }
        const QPointF label = onScreen(QPointF(m_people[i].box.left(), m_people[i].box.bottom()));
        painter.setPen(colour);
        painter.drawText(label + QPointF(4, 14), QStringLiteral("#%1").arg(i + 1));
    }
}

} // namespace lumaro::app
