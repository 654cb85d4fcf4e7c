// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/TrashFastPath.h"

#include "cli/ExitCode.h"
#include "cli/front/JsonText.h"
#include "cli/front/LineEscape.h"
#include "cli/front/WriteAll.h"

#include "browse/trash/DeleteLogText.h"
#include "platform/files/CleanAbsolutePath.h"
#include "platform/files/PathKind.h"
#include "platform/files/SidecarNames.h"
#include "platform/files/TrashItem.h"
#include "platform/files/XdgHomes.h"

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace lumaro::cli {

namespace {

namespace Words = browse::DeleteLogText;
using Clock = std::chrono::steady_clock;

struct Request
{
    bool quiet = false;
    bool json = false;
    std::vector<std::string> paths;
};

struct Plan
{
    std::string given;
    std::string absolute;
    std::string name;
};

std::optional<Request> plainRequest(int count, char* words[])
{
    Request request;
    for (int i = 0; i < count; ++i) {
        const std::string_view word = words[i];
        if (word == "-q" || word == "--quiet")
            request.quiet = true;
        else if (word == "--json")
            request.json = true;
        else if (word.empty() || word.front() == '-')
            return std::nullopt; // --restore, --help and "--" are lumaro-cli-light's
        else
            request.paths.emplace_back(word);
    }
    if (request.paths.empty())
        return std::nullopt;
    return request;
}

// Whether a sidecar FileDeleteService might take along is there; which ones it takes is its to decide.
bool hasSidecarBeside(const std::string& absolute)
{
    for (const std::string& candidate : platform::sidecarCandidates(absolute)) {
        if (platform::PathKind::exists(candidate.c_str()))
            return true;
    }
    return false;
}

// The home trash when it is ready to take files as it is (nothing to create) and records absolute paths.
std::optional<std::string> readyHomeTrash()
{
    auto trash = platform::XdgHomes::plainHomeTrash();
    if (!trash)
        return std::nullopt;
    for (const std::string& folder : {*trash, *trash + "/files", *trash + "/info"}) {
        if (!platform::PathKind::isDirectory(folder.c_str()))
            return std::nullopt;
    }
    return trash;
}

std::optional<std::vector<Plan>> planOf(const Request& request, std::uint64_t trashDevice)
{
    std::vector<Plan> plans;
    std::set<std::string> seen;
    for (const std::string& path : request.paths) {
        // Tidy, the file's name is its last part and its absolute form the working folder joined to it, as Qt
        // has them.
        if (!platform::CleanAbsolutePath::isTidy(path))
            return std::nullopt;
        auto absolute = platform::CleanAbsolutePath::of(path);
        if (!absolute || !seen.insert(*absolute).second ||
            !platform::PathKind::isPlainFileItself(absolute->c_str()))
            return std::nullopt;
        const size_t slash = absolute->rfind('/');
        const std::string folder = slash == 0 ? std::string("/") : absolute->substr(0, slash);
        std::string name = absolute->substr(slash + 1);
        if (!platform::PathKind::canList(folder.c_str()) ||
            platform::PathKind::deviceOf(folder.c_str()) != trashDevice || hasSidecarBeside(*absolute))
            return std::nullopt;
        plans.push_back({path, std::move(*absolute), std::move(name)});
    }
    return plans;
}

std::string perfLine(std::string_view step, Clock::time_point since)
{
    char seconds[32];
    std::snprintf(seconds, sizeof seconds, "%.3f",
                  std::chrono::duration<double>(Clock::now() - since).count());
    return std::string(Words::perfPrefix) + std::string(step) + "=" + seconds + " s\n";
}

} // namespace

std::optional<int> TrashFastPath::run(int count, char* words[])
{
    const auto request = plainRequest(count, words);
    if (!request)
        return std::nullopt;
    const auto trash = readyHomeTrash();
    const auto trashDevice = trash ? platform::PathKind::deviceOf(trash->c_str()) : std::nullopt;
    const auto plans = trashDevice ? planOf(*request, *trashDevice) : std::nullopt;
    if (!plans)
        return std::nullopt;

    std::string out;
    std::string said;
    const auto log = [&](const std::string& line) {
        if (!request->quiet)
            said += line;
    };
    int failed = 0;
    for (const Plan& plan : *plans) {
        const auto started = Clock::now();
        log(perfLine(Words::stepBookmark, started));
        log(perfLine(Words::stepScope, started));
        const auto step = Clock::now();
        std::string error;
        const auto placed = platform::TrashItem::place(plan.absolute, plan.name, *trash,
                                                       platform::TrashItem::record(plan.absolute), &error);
        log(placed ? logLine(Words::tag, std::string(Words::trashed) + plan.name)
                   : logLine(Words::tag, std::string(Words::failure) + error));
        log(perfLine(Words::stepTrash, step));
        log(perfLine(Words::stepTotal, started));
        if (!placed) {
            ++failed;
            said += "lumaro-cli trash: " + escapedLineBytes(plan.given) + ": " + error + "\n";
        }
        if (request->json) {
            // Keys in QJsonObject's order: sorted.
            out += (out.empty() ? "[" : ",") +
                   (placed ? "{\"file\":" + jsonString(plan.given) + ",\"trashedPath\":" +
                                 jsonString(placed->trashedPath) + "}"
                           : "{\"error\":" + jsonString(error) + ",\"file\":" + jsonString(plan.given) + "}");
        } else if (placed) {
            out += escapedLineBytes(plan.given) + " -> " + escapedLineBytes(placed->trashedPath) + "\n";
        }
    }
    if (request->json)
        out += "]\n";
    writeAll(stderr, said);
    writeAll(stdout, out);
    return failed == 0 ? exitOk : exitPartial;
}

} // namespace lumaro::cli
