// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ShootingInfoOverlay.h"

#include "browse/state/LMRModeState.h"
#include "platform/XattrTagStore.h"

#include <QDir>
#include <QEvent>
#include <QPainter>
#include <QPointer>
#include <QThreadPool>

namespace lumaro::app {

namespace {

constexpr int kMargin = 12;
constexpr int kLine = 20;

} // namespace

ShootingInfoOverlay::ShootingInfoOverlay(browse::LMRModeState& state, QWidget* parent)
    : QWidget(parent), m_state(state)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    parent->installEventFilter(this);
    connect(&m_state, &browse::LMRModeState::selectionChanged, this, &ShootingInfoOverlay::follow);
    connect(&m_state, &browse::LMRModeState::imageFilesChanged, this, &ShootingInfoOverlay::follow);
    connect(&m_state, &browse::LMRModeState::perFileDataChanged, this, qOverload<>(&QWidget::update));
}

void ShootingInfoOverlay::toggle()
{
    setVisible(isHidden());
    if (isVisible()) {
        raise();
        follow();
    }
}

bool ShootingInfoOverlay::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == parent() && event->type() == QEvent::Resize)
        place();
    return QWidget::eventFilter(watched, event);
}

void ShootingInfoOverlay::place()
{
    const int rows = int(lines().size());
    const QSize size(340, rows * kLine + 16);
    setGeometry(QRect(QPoint(kMargin, parentWidget()->height() - size.height() - kMargin), size));
}

void ShootingInfoOverlay::follow()
{
    if (isHidden())
        return;
    const auto folder = m_state.currentFolder();
    const auto name = m_state.selectedImageFileName();
    m_wantedPath = folder && name ? QDir(*folder).filePath(*name) : QString();
    m_shownPath = m_cache.contains(m_wantedPath) ? m_wantedPath : QString();
    place();
    update();
    if (m_wantedPath.isEmpty() || m_cache.contains(m_wantedPath) || m_reading.contains(m_wantedPath))
        return;
    m_reading.insert(m_wantedPath);
    QPointer<ShootingInfoOverlay> self(this);
    QThreadPool::globalInstance()->start([self, path = m_wantedPath] {
        const browse::ShootingInfo info = browse::ShootingInfo::read(path, platform::XattrTagStore::shared());
        QMetaObject::invokeMethod(
            self.data(),
            [self, info] {
                if (!self)
                    return;
                self->m_reading.remove(info.path);
                self->m_cache.insert(info.path, info);
                if (info.path == self->m_wantedPath)
                    self->follow();
            },
            Qt::QueuedConnection);
    });
}

QStringList ShootingInfoOverlay::lines() const
{
    if (m_shownPath.isEmpty())
        return {tr("正在读取拍摄信息…")};
    browse::ShootingInfo info = m_cache.value(m_shownPath);
    // Tags and rating as they are now: the keys may have changed them since the file was read.
    const QString name = m_shownPath.section(QLatin1Char('/'), -1);
    info.tags = m_state.fileTags().value(name);
    info.marks = m_state.rating(name);
    QStringList lines{name};
    for (const browse::ShootingInfo::Fact& fact : info.facts())
        lines << fact.label + QStringLiteral("  ") + fact.value;
    if (!info.readable)
        lines << tr("无拍摄信息：%1").arg(info.error);
    return lines;
}

void ShootingInfoOverlay::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 170));
    painter.drawRoundedRect(rect(), 6, 6);
    painter.setPen(QColor(235, 235, 235));
    int y = 8;
    for (const QString& line : lines()) {
        painter.drawText(QRect(10, y, width() - 20, kLine), Qt::AlignVCenter | Qt::AlignLeft, line);
        y += kLine;
    }
}

} // namespace lumaro::app
