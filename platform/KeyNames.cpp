// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/KeyNames.h"

#include <QHash>
#include <Qt>

namespace lumaro::platform {

namespace {

const QHash<int, QString>& namedKeys()
{
    static const QHash<int, QString> table{
        {Qt::Key_F1, QStringLiteral("1")},      {Qt::Key_F11, QStringLiteral("1")},
        {Qt::Key_F2, QStringLiteral("2")},      {Qt::Key_F12, QStringLiteral("2")},
        {Qt::Key_F3, QStringLiteral("3")},      {Qt::Key_F13, QStringLiteral("3")},
        {Qt::Key_Delete, QStringLiteral("d")},  {Qt::Key_Home, QStringLiteral("h")},
        {Qt::Key_F4, QStringLiteral("f4")},     {Qt::Key_F5, QStringLiteral("f5")},
        {Qt::Key_F6, QStringLiteral("f6")},     {Qt::Key_F7, QStringLiteral("f7")},
        {Qt::Key_F8, QStringLiteral("f8")},     {Qt::Key_F9, QStringLiteral("f9")},
        {Qt::Key_F10, QStringLiteral("f10")},   {Qt::Key_F14, QStringLiteral("f14")},
        {Qt::Key_F15, QStringLiteral("f15")},   {Qt::Key_F16, QStringLiteral("f16")},
        {Qt::Key_F17, QStringLiteral("f17")},   {Qt::Key_F18, QStringLiteral("f18")},
        {Qt::Key_F19, QStringLiteral("f19")},   {Qt::Key_F20, QStringLiteral("f20")},
        {Qt::Key_Return, QStringLiteral("return")}, {Qt::Key_Enter, QStringLiteral("enter")},
        {Qt::Key_Tab, QStringLiteral("tab")},   {Qt::Key_Backtab, QStringLiteral("tab")},
        {Qt::Key_Space, QStringLiteral("space")}, {Qt::Key_Backspace, QStringLiteral("delete")},
        {Qt::Key_Escape, QStringLiteral("escape")}, {Qt::Key_Left, QStringLiteral("leftArrow")},
        {Qt::Key_Right, QStringLiteral("rightArrow")}, {Qt::Key_Up, QStringLiteral("upArrow")},
        {Qt::Key_Down, QStringLiteral("downArrow")}, {Qt::Key_PageUp, QStringLiteral("pageUp")},
        {Qt::Key_PageDown, QStringLiteral("pageDown")}, {Qt::Key_End, QStringLiteral("end")},
        {Qt::Key_Insert, QStringLiteral("help")},
    };
    return table;
}

} // namespace

std::optional<QString> keyName(int qtKey)
{
    if ((qtKey >= Qt::Key_A && qtKey <= Qt::Key_Z) || (qtKey >= Qt::Key_0 && qtKey <= Qt::Key_9))
        return QString(QChar(qtKey)).toLower();
    const auto named = namedKeys().constFind(qtKey);
    if (named != namedKeys().constEnd())
        return *named;
    // The printable punctuation keys name themselves (Qt's codes for them are their Latin-1 characters).
    if (qtKey > Qt::Key_Space && qtKey <= Qt::Key_AsciiTilde)
        return QString(QChar(qtKey));
    return std::nullopt;
}

} // namespace lumaro::platform
