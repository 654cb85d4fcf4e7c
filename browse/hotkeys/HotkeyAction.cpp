// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/hotkeys/HotkeyAction.h"

#include <array>

namespace lumaro::browse {

namespace {

struct ActionText
{
    const char* raw;
    const char* name;
    const char* symbol;
    const char* description;
    const char* color; // nullptr for actions without a colour
};

// Indexed by the enum's value; the order is the settings page's order.
constexpr std::array<ActionText, 17> kActions{{
    {"navigate_previous", "上一张图片", "arrow.left", "浏览到上一张图片", nullptr},
    {"navigate_next", "下一张图片", "arrow.right", "浏览到下一张图片", nullptr},
    {"navigate_up", "上一行图片", "arrow.up", "浏览到上一行图片", nullptr},
    {"navigate_down", "下一行图片", "arrow.down", "浏览到下一行图片", nullptr},
    {"navigate_folder_next", "下一个文件夹", "folder.badge.plus", "切换到下一个文件夹", nullptr},
    {"navigate_folder_previous", "上一个文件夹", "folder.badge.minus", "切换到上一个文件夹", nullptr},
    {"annotate_red", "红色标注", "circle.fill", "为当前图片添加红色标注", "red"},
    {"annotate_yellow", "黄色标注", "circle.fill", "为当前图片添加黄色标注", "yellow"},
    {"annotate_orange", "橙色标注", "circle.fill", "为当前图片添加橙色标注", "orange"},
    {"annotate_green", "绿色标注", "circle.fill", "为当前图片添加绿色标注", "green"},
    {"annotate_blue", "蓝色标注", "circle.fill", "为当前图片添加蓝色标注", "blue"},
    {"annotate_purple", "紫色标注", "circle.fill", "为当前图片添加紫色标注", "purple"},
    {"delete_file", "删除文件", "trash", "删除当前选中的文件", nullptr},
    {"restore_file", "恢复文件", "arrow.uturn.backward", "恢复最近删除的文件", nullptr},
    {"rotate_left", "左旋转", "rotate.left", "将当前图片向左旋转90度", nullptr},
    {"toggle_full_screen", "切换全屏", "arrow.up.left.and.arrow.down.right", "切换全屏显示模式", nullptr},
    {"toggle_dir_panel", "文件夹面板", "folder.fill", "双击数字4唤出文件夹面板，单记数字4关闭", nullptr},
}};

const ActionText& textOf(HotkeyAction action)
{
    return kActions.at(size_t(action));
}

} // namespace

const QList<HotkeyAction>& allHotkeyActions()
{
    static const QList<HotkeyAction> actions = [] {
        QList<HotkeyAction> list;
        for (size_t i = 0; i < kActions.size(); ++i)
            list.append(HotkeyAction(i));
        return list;
    }();
    return actions;
}

QString rawValue(HotkeyAction action)
{
    return QString::fromLatin1(textOf(action).raw);
}

std::optional<HotkeyAction> hotkeyActionFromRawValue(const QString& raw)
{
    for (HotkeyAction action : allHotkeyActions()) {
        if (rawValue(action) == raw)
            return action;
    }
    return std::nullopt;
}

QString displayName(HotkeyAction action)
{
    return QString::fromUtf8(textOf(action).name);
}

QString symbolName(HotkeyAction action)
{
    return QString::fromLatin1(textOf(action).symbol);
}

QString actionDescription(HotkeyAction action)
{
    return QString::fromUtf8(textOf(action).description);
}

std::optional<QString> colorName(HotkeyAction action)
{
    const char* color = textOf(action).color;
    if (!color)
        return std::nullopt;
    return QString::fromLatin1(color);
}

std::optional<HotkeyAction> annotateActionForColor(const QString& color)
{
    for (HotkeyAction action : allHotkeyActions()) {
        if (colorName(action) == color)
            return action;
    }
    return std::nullopt;
}

bool repeatsWhileHeld(HotkeyAction action)
{
    switch (action) {
    case HotkeyAction::navigatePrevious:
    case HotkeyAction::navigateNext:
    case HotkeyAction::navigateUp:
    case HotkeyAction::navigateDown: return true;
    default: return false;
    }
}

} // namespace lumaro::browse
