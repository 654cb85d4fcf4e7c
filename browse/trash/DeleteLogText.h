// SPDX-License-Identifier: GPL-3.0-or-later
// The words FileDeleteService logs when it moves a file to the Trash; lumaro-cli's Qt-free front end, which
// trashes plain files itself, logs the same.
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

} // namespace lumaro::browse::DeleteLogText
