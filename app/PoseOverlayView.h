// SPDX-License-Identifier: GPL-3.0-or-later
// A picture with each person's joints, bones and the segments that decided the pose drawn over it.
#pragma once

#include "pose/PicturePoseAnalyzer.h"

#include <QImage>
#include <QWidget>

#include <vector>

namespace lumaro::app {

// Main thread only. Joints are given normalised with y upward, as the detector delivers them; the view flips
// them onto the picture. Deciding segments (the thigh level 1 chose, the shank or feet level 2 judged) are
// drawn thick in the person's colour; joints without a location are not drawn.
class PoseOverlayView : public QWidget
{
    Q_OBJECT
public:
    explicit PoseOverlayView(QWidget* parent = nullptr);

    void show(const QImage& picture, std::vector<pose::AnalysedPerson> people);
    void clear();

    QSize sizeHint() const override { return {320, 320}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QImage m_picture;
    std::vector<pose::AnalysedPerson> m_people;
};

} // namespace lumaro::app
