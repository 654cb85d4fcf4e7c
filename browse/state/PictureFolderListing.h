// SPDX-License-Identifier: GPL-3.0-or-later
// Which files of a folder are pictures and in what order, without Qt: the rules FileSystemService lists by
// and lumaro-cli's Qt-free front end prints from, so that `list` and the window never disagree.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumaro::browse {

// One folder's visible entries (no dot-names, none in its ".hidden"): the pictures by name and the child
// folders by name, each sorted by the names' bytes (for UTF-8 plain code-point order: B.jpg before a.jpg,
// IMG_10 before IMG_9). Thread-safe, blocking.
struct PictureFolderListing
{
    // The eleven extensions browsing shows, matched on the suffix after the last dot, ASCII case ignored.
    static constexpr std::array<std::string_view, 11> extensions{"jpg", "jpeg", "png", "heic", "heif", "tiff",
                                                                 "tif", "bmp",  "gif", "webp", "cr2"};

    std::vector<std::string> pictures;
    std::vector<std::string> folders;
    std::size_t entryCount = 0; // every visible entry

    static bool isPictureName(std::string_view name);
    // nullopt when the folder cannot be read; `errorNumber` then holds errno's value.
    static std::optional<PictureFolderListing> read(const char* folder, int* errorNumber = nullptr);
};

// The words FileSystemService logs a listing with ("FileSystemService - 过滤后找到 3 个图像文件"), UTF-8.
struct FolderListingLog
{
    static constexpr std::string_view tag = "FileSystemService";
    static constexpr std::string_view loading = "开始加载文件夹: ";
    static constexpr std::string_view entriesBefore = "文件夹中共有 ";
    static constexpr std::string_view entriesAfter = " 个项目";
    static constexpr std::string_view picturesBefore = "过滤后找到 ";
    static constexpr std::string_view picturesAfter = " 个图像文件";
};

} // namespace lumaro::browse
