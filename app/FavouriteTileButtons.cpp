// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/FavouriteTileButtons.h"

#include <QMenu>
#include <QPainter>
#include <QWidget>

namespace lumaro::app {

namespace {

constexpr int kButton = 22;
constexpr int kMargin = 6;

QString badgeOf(library::FavourType type)
{
    switch (type) {
    case library::FavourType::heart: return QStringLiteral("♥");
    case library::FavourType::diamond: return QStringLiteral("♦");
    case library::FavourType::grass: return QStringLiteral("♣");
    case library::FavourType::black: return QStringLiteral("♠");
    default: return library::storedText(type);
    }
}

bool hasRoom(const QRect& cell)
{
    return cell.width() >= 3 * kButton + 3 * kMargin && cell.height() >= kButton + 2 * kMargin;
}

} // namespace

QRect FavouriteTileButtons::heartRect(const QRect& cell)
{
    if (!hasRoom(cell))
        return {};
    return QRect(cell.left() + kMargin, cell.bottom() - kMargin - kButton + 1, kButton, kButton);
}

QRect FavouriteTileButtons::typeRect(const QRect& cell)
{
    const QRect heart = heartRect(cell);
    if (heart.isNull())
        return {};
    return QRect(heart.right() + kMargin, heart.top(), kButton * 2, kButton);
}

QString FavouriteTileButtons::typeBadge(const FavouriteToggle::Mark& mark)
{
    return mark.type ? badgeOf(*mark.type) : QStringLiteral("☆");
}

void FavouriteTileButtons::paint(QPainter& painter, const QRect& cell, const FavouriteToggle::Mark& mark)
{
    const QRect heart = heartRect(cell);
    if (heart.isNull())
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 120));
    painter.drawRoundedRect(heart, 6, 6);
    painter.drawRoundedRect(typeRect(cell), 6, 6);
    QFont font = painter.font();
    font.setBold(true);
    font.setPixelSize(13);
    painter.setFont(font);
    painter.setPen(mark.isFavour ? QColor(0xff, 0x3b, 0x5c) : QColor(Qt::white));
    painter.drawText(heart, Qt::AlignCenter, mark.isFavour ? QStringLiteral("♥") : QStringLiteral("♡"));
    painter.setPen(mark.type ? QColor(0xff, 0xd6, 0x4a) : QColor(Qt::white));
    painter.drawText(typeRect(cell), Qt::AlignCenter, typeBadge(mark));
    painter.restore();
}

bool FavouriteTileButtons::click(FavouriteToggle& toggle, const QString& path, const QRect& cell,
                                 const QPoint& position, QWidget* menuParent)
{
    if (heartRect(cell).contains(position)) {
        toggle.toggleHeart(path);
        return true;
    }
    const QRect typeButton = typeRect(cell);
    if (!typeButton.contains(position))
        return false;
    QMenu menu(menuParent);
    const auto current = toggle.mark(path).type;
    for (const library::FavourType type : library::allFavourTypes) {
        QAction* action = menu.addAction(badgeOf(type), [&toggle, path, type] { toggle.chooseType(path, type); });
        action->setCheckable(true);
        action->setChecked(current == type);
    }
    menu.addSeparator();
    QAction* clear = menu.addAction(QObject::tr("清除类型"), [&toggle, path] { toggle.clearType(path); });
    clear->setEnabled(current.has_value());
    menu.exec(menuParent ? menuParent->mapToGlobal(typeButton.bottomLeft()) : typeButton.bottomLeft());
    return true;
}

} // namespace lumaro::app
