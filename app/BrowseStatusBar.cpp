// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/BrowseStatusBar.h"

#include "browse/state/LMRModeState.h"
#include "platform/files/OneLineName.h"

#include <QLabel>
#include <QProgressBar>

namespace lumaro::app {

BrowseStatusBar::BrowseStatusBar(browse::LMRModeState& state, QWidget* parent)
    : QStatusBar(parent), m_state(state), m_file(new QLabel(this)), m_count(new QLabel(this)),
      m_progress(new QProgressBar(this))
{
    m_progress->setRange(0, 0); // busy: a listing has no known length
    m_progress->setMaximumWidth(160);
    m_progress->setFormat(tr("正在加载…"));
    m_progress->hide();
    m_file->setTextInteractionFlags(Qt::TextSelectableByMouse);
    addWidget(m_file, 1);
    addPermanentWidget(m_progress);
    addPermanentWidget(m_count);
    connect(&state, &browse::LMRModeState::stateChanged, this, &BrowseStatusBar::refresh);
    connect(&state, &browse::LMRModeState::selectionChanged, this, &BrowseStatusBar::refresh);
    connect(&state, &browse::LMRModeState::imageFilesChanged, this, &BrowseStatusBar::refresh);
    refresh();
}

QString BrowseStatusBar::fileText() const
{
    return m_file->text();
}

QString BrowseStatusBar::countText() const
{
    return m_count->text();
}

bool BrowseStatusBar::isShowingProgress() const
{
    return !m_progress->isHidden();
}

void BrowseStatusBar::refresh()
{
    m_progress->setVisible(m_state.isLoadingImages);
    const auto index = m_state.selectedImageIndex();
    const auto total = m_state.imageFiles().size();
    m_file->setText(platform::OneLineName::of(m_state.selectedImageFileName().value_or(QString())));
    QString count =
        index ? QStringLiteral("%1 / %2").arg(*index + 1).arg(total) : QStringLiteral("0 / %1").arg(total);
    // Filtered: what is hidden is said, so an empty or short list never looks like missing pictures.
    if (m_state.pictureFilter().isActive())
        count = tr("筛选: %1  ·  %2（共 %3）")
                    .arg(m_state.pictureFilter().description(), count)
                    .arg(m_state.folderFiles().size());
    m_count->setText(count);
}

} // namespace lumaro::app
