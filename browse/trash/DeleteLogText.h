// SPDX-License-Identifier: GPL-3.0-or-later
// The words FileDeleteService logs when it moves a file to the Trash and puts one back; lumaro-cli's Qt-free
// front end, which trashes and restores plain files itself, logs the same.
#pragma once

#include <string_view>

namespace lumaro::browse::DeleteLogText {

inline constexpr std::string_view tag = "FileDeleteService";
inline constexpr std::string_view trashed = "成功将文件移动到废纸篓: ";
inline constexpr std::string_view failure = "错误详情: ";
// Each step of a deletion is timed: "PERF-DEL: STEP=SECONDS s", three decimals.
inline constexpr std::string_view perfPrefix = "PERF-DEL: ";
inline constexpr std::string_view stepBookmark = "resolveBookmark";
inline constexpr std::string_view stepScope = "startScope";
inline constexpr std::string_view stepTrash = "trashOp";
inline constexpr std::string_view stepTotal = "total";


// Putting a file back, in the order a restore by lookup logs them.
inline constexpr std::string_view restoreStart = "开始恢复文件: ";
inline constexpr std::string_view restoreOriginalFolder = "原始文件夹路径: ";
inline constexpr std::string_view restoreTargetFolder = "目标文件夹路径: ";
inline constexpr std::string_view restoreTargetFile = "目标文件路径: ";
inline constexpr std::string_view restoreNoSavedItem = "没有保存的废纸篓文件路径，将尝试查找";
inline constexpr std::string_view restoreByLookup = "使用系统API恢复文件: ";
inline constexpr std::string_view restoreTrashPath = "废纸篓路径: ";
inline constexpr std::string_view restoreTargetDirectory = "目标目录路径: ";
inline constexpr std::string_view restoreFileName = "要恢复的文件名: ";
inline constexpr std::string_view restoreDone = "成功恢复文件: ";
inline constexpr std::string_view restoreFinished = "文件恢复完成，准备恢复系统标签 (若有)";

} // namespace lumaro::browse::DeleteLogText
