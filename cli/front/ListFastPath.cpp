// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/ListFastPath.h"

#include "cli/ExitCode.h"
#include "cli/front/JsonText.h"
#include "cli/front/LineEscape.h"
#include "cli/front/WriteAll.h"

#include "browse/state/PictureFolderListing.h"
#include "platform/files/Utf8Sequence.h"
#include "platform/files/VisibleEntries.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <string_view>

namespace lumaro::cli {

namespace {

struct ListRequest
{
    const char* folder = nullptr;
    bool quiet = false;
    bool nul = false;
    bool json = false;
};

std::optional<ListRequest> plainRequest(int count, char* words[])
{
    ListRequest request;
    for (int i = 0; i < count; ++i) {
        const std::string_view word = words[i];
        if (word == "-q" || word == "--quiet")
            request.quiet = true;
        else if (word == "-0" || word == "--null")
            request.nul = true;
        else if (word == "--json")
            request.json = true;
        else if (word.empty() || word.front() == '-' || request.folder)
            return std::nullopt;
        else
            request.folder = words[i];
    }
    if (!request.folder || !platform::isValidUtf8(request.folder))
        return std::nullopt;
    return request;
}

std::string logLines(const char* folder, const browse::PictureFolderListing& listing)
{
    using Log = browse::FolderListingLog;
    const std::string prefix = std::string(Log::tag) + " - ";
    std::string lines = prefix + std::string(Log::loading) + folder + "\n";
    lines += prefix + std::string(Log::entriesBefore) + std::to_string(listing.entryCount) +
             std::string(Log::entriesAfter) + "\n";
    lines += prefix + std::string(Log::picturesBefore) + std::to_string(listing.pictures.size()) +
             std::string(Log::picturesAfter) + "\n";
    return lines;
}

} // namespace

std::optional<int> ListFastPath::run(int count, char* words[])
{
    const auto request = plainRequest(count, words);
    // The check lumaro-cli-light makes before listing (FolderAccessToken::startAccess); it alone words a
    // failure.
    if (!request || !platform::VisibleEntries::isListableFolder(request->folder))
        return std::nullopt;
    const auto listing = browse::PictureFolderListing::read(request->folder);
    if (!listing)
        return std::nullopt;
    const auto& names = listing->pictures;
    // A name that is not UTF-8 reaches JSON through Qt's own conversion: lumaro-cli-light's to write.
    if (request->json && !std::all_of(names.begin(), names.end(),
                                      [](const std::string& name) { return platform::isValidUtf8(name); }))
        return std::nullopt;
    if (!request->quiet)
        writeAll(stderr, logLines(request->folder, *listing));
    if (request->json) {
        writeAll(stdout, jsonArray(names) + "\n");
        return exitOk;
    }
    std::string out;
    for (const std::string& name : names) {
        if (request->nul) {
            out += name; // the names' own bytes, also those that are not UTF-8, as find -print0 gives them
            out += '\0';
        } else {
            appendEscapedLineBytes(out, name);
            out += '\n';
        }
    }
    writeAll(stdout, out);
    return exitOk;
}

} // namespace lumaro::cli
