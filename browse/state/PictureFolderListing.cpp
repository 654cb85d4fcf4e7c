// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/state/PictureFolderListing.h"

#include "platform/files/VisibleEntries.h"

#include <algorithm>

namespace lumaro::browse {

namespace {

char asciiLower(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}

bool equalIgnoringAsciiCase(std::string_view a, std::string_view lowerCase)
{
    return a.size() == lowerCase.size() && std::equal(a.begin(), a.end(), lowerCase.begin(),
                                                      [](char x, char y) { return asciiLower(x) == y; });
}

} // namespace

// Runs once per directory entry, so it compares bytes in place instead of building lower-cased copies.
bool PictureFolderListing::isPictureName(std::string_view name)
{
    const size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return false;
    const std::string_view suffix = name.substr(dot + 1);
    return std::any_of(extensions.begin(), extensions.end(), [suffix](std::string_view candidate) {
        return equalIgnoringAsciiCase(suffix, candidate);
    });
}

std::optional<PictureFolderListing> PictureFolderListing::read(const char* folder, int* errorNumber)
{
    auto entries = platform::VisibleEntries::read(folder, errorNumber);
    if (!entries)
        return std::nullopt;
    PictureFolderListing listing;
    listing.entryCount = entries->size();
    for (platform::VisibleEntry& entry : *entries) {
        if (entry.kind == platform::VisibleEntry::Kind::file && isPictureName(entry.name))
            listing.pictures.push_back(std::move(entry.name));
        else if (entry.kind == platform::VisibleEntry::Kind::directory)
            listing.folders.push_back(std::move(entry.name));
    }
    std::sort(listing.pictures.begin(), listing.pictures.end());
    std::sort(listing.folders.begin(), listing.folders.end());
    return listing;
}

} // namespace lumaro::browse
