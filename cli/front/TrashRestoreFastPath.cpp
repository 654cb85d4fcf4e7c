// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/TrashRestoreFastPath.h"

#include "cli/ExitCode.h"
#include "cli/front/LineEscape.h"
#include "cli/front/WriteAll.h"

#include "browse/trash/DeleteLogText.h"
#include "platform/files/AsciiTrimmed.h"
#include "platform/files/CleanAbsolutePath.h"
#include "platform/files/FileBytes.h"
#include "platform/files/PathKind.h"
#include "platform/files/TrashItem.h"
#include "platform/files/Utf8Sequence.h"
#include "platform/files/VisibleEntries.h"
#include "platform/files/XdgHomes.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace lumaro::cli {

namespace {

namespace Words = browse::DeleteLogText;
constexpr std::string_view recordSuffix = ".trashinfo";

struct Request
{
    bool quiet = false;
    std::vector<std::string> paths;
};

struct Item
{
    platform::TrashItem::Placed place;
    std::string deletionDate;
};

struct Plan
{
    std::string given;
    std::string absolute;
    std::string folder;
    std::string name;
    Item item;
};

std::optional<Request> plainRequest(int count, char* words[])
{
    Request request;
    bool restore = false;
    for (int i = 0; i < count; ++i) {
        const std::string_view word = words[i];
        if (word == "-q" || word == "--quiet")
            request.quiet = true;
        else if (word == "--restore" && !restore)
            restore = true;
        else if (word.empty() || word.front() == '-')
            return std::nullopt; // --json, --help and "--" are lumaro-cli-light's
        else
            request.paths.emplace_back(word);
    }
    if (!restore || request.paths.empty())
        return std::nullopt;
    return request;
}

bool endsWithIgnoringCase(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() &&
           std::equal(end.begin(), end.end(), text.end() - std::ptrdiff_t(end.size()),
                      [](char lower, char c) { return (c | 0x20) == lower; });
}

// The names in info/, listed once for the batch as TrashRecords lists them; nullopt when a trashed sidecar is
// among them (putting it back with its picture is lumaro-cli-light's).
std::optional<std::set<std::string>> recordNames(const std::string& trash)
{
    const auto listed = platform::TrashItem::recordNames(trash);
    if (!listed)
        return std::nullopt;
    std::set<std::string> names;
    for (const std::string& name : *listed) {
        if (endsWithIgnoringCase(std::string_view(name).substr(0, name.size() - recordSuffix.size()), ".xmp"))
            return std::nullopt;
        names.insert(name);
    }
    return names;
}

// QByteArray::fromPercentEncoding: "%" and two hex digits give their byte, anything else stays.
std::string percentDecoded(std::string_view text)
{
    const auto hex = [](char c) {
        return c >= '0' && c <= '9'   ? c - '0'
               : c >= 'a' && c <= 'f' ? c - 'a' + 10
               : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                      : -1;
    };
    std::string bytes;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && hex(text[i + 1]) >= 0 && hex(text[i + 2]) >= 0) {
            bytes += char(hex(text[i + 1]) * 16 + hex(text[i + 2]));
            i += 2;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

struct Record
{
    std::string path; // as written, decoded
    std::string deletionDate;
};

// A record as TrashRestorer reads one (its first 64 KB, "[Trash Info]" first, the last Path= and
// DeletionDate= lines); nullopt when it is not one.
std::optional<Record> readRecord(const std::string& infoPath)
{
    const auto bytes = platform::readFileBytes(infoPath.c_str(), 64 * 1024);
    if (!bytes)
        return std::nullopt;
    const std::string_view text = *bytes;
    Record record;
    bool first = true;
    for (size_t start = 0; start <= text.size();) {
        const size_t end = std::min(text.find('\n', start), text.size());
        const std::string_view line(text.data() + start, end - start);
        start = end + 1;
        if (first && platform::asciiTrimmed(line) != "[Trash Info]")
            return std::nullopt;
        first = false;
        if (line.starts_with("Path="))
            record.path = percentDecoded(platform::asciiTrimmed(line.substr(5)));
        else if (line.starts_with("DeletionDate="))
            record.deletionDate = platform::asciiTrimmed(line.substr(13));
    }
    if (record.path.empty())
        return std::nullopt;
    return record;
}

bool isPlainDate(std::string_view date)
{
    constexpr std::string_view shape = "0000-00-00T00:00:00";
    return date.size() == shape.size() &&
           std::equal(shape.begin(), shape.end(), date.begin(),
                      [](char s, char c) { return s == '0' ? c >= '0' && c <= '9' : s == c; });
}

enum class Found
{
    item,
    unclear // FileDeleteService would search further, or could order or read the records otherwise
};

// The newest item trashed from `absolute` among the records named after its file, as TrashRestorer probes
// them: "IMG_1.jpg", "IMG_1.2.jpg", … past gaps of up to 16 names.
std::pair<Found, Item> newestItem(const std::string& trash, const std::set<std::string>& names,
                                  const std::string& absolute, const std::string& name)
{
    std::vector<Item> items;
    int misses = 0;
    for (int attempt = 1; misses < 16 && attempt <= 1000; ++attempt) {
        const std::string itemName = platform::TrashItem::name(name, attempt);
        const std::string recordName = itemName + std::string(recordSuffix);
        const auto record =
            names.contains(recordName) ? readRecord(trash + "/info/" + recordName) : std::nullopt;
        if (!record) {
            ++misses;
            continue;
        }
        misses = 0;
        if (record->path.front() == '/' && !platform::CleanAbsolutePath::isTidy(record->path))
            return {Found::unclear, {}};
        const std::string trashed = trash + "/files/" + itemName;
        if (record->path == absolute && platform::PathKind::exists(trashed.c_str()))
            items.push_back({{trashed, trash + "/info/" + recordName}, record->deletionDate});
    }
    if (items.empty())
        return {Found::unclear, {}};
    if (items.size() > 1 &&
        !std::all_of(items.begin(), items.end(), [](const Item& i) { return isPlainDate(i.deletionDate); }))
        return {Found::unclear, {}};
    std::stable_sort(items.begin(), items.end(),
                     [](const Item& a, const Item& b) { return a.deletionDate > b.deletionDate; });
    return {Found::item, items.front()};
}

std::optional<std::vector<Plan>> planOf(const Request& request, const std::string& trash)
{
    const auto names = recordNames(trash);
    const auto trashDevice = platform::PathKind::deviceOf(trash.c_str());
    if (!names || !trashDevice)
        return std::nullopt;
    std::vector<Plan> plans;
    std::set<std::string> seen;
    for (const std::string& path : request.paths) {
        if (!platform::CleanAbsolutePath::isTidy(path) || !platform::isValidUtf8(path))
            return std::nullopt;
        auto absolute = platform::CleanAbsolutePath::of(path);
        if (!absolute || *absolute == "/" || !seen.insert(*absolute).second ||
            platform::PathKind::exists(absolute->c_str()))
            return std::nullopt;
        const size_t slash = absolute->rfind('/');
        const std::string folder = slash == 0 ? std::string("/") : absolute->substr(0, slash);
        const std::string name = absolute->substr(slash + 1);
        if (!platform::VisibleEntries::isListableFolder(folder.c_str()) ||
            platform::PathKind::deviceOf(folder.c_str()) != trashDevice ||
            platform::TrashItem::hasVolumeTrashAbove(folder))
            return std::nullopt;
        auto [found, item] = newestItem(trash, *names, *absolute, name);
        if (found != Found::item ||
            platform::PathKind::deviceOf(item.place.trashedPath.c_str()) != trashDevice)
            return std::nullopt;
        plans.push_back({path, std::move(*absolute), folder, name, std::move(item)});
    }
    return plans;
}

std::string restoreLog(const Plan& plan, const std::string& trash)
{
    const auto line = [](std::string_view words, std::string_view rest = {}) {
        return logLine(Words::tag, std::string(words) + std::string(rest));
    };
    return line(Words::restoreStart, plan.name) + line(Words::restoreOriginalFolder, plan.folder) +
           line(Words::restoreTargetFolder, plan.folder) + line(Words::restoreTargetFile, plan.absolute) +
           line(Words::restoreNoSavedItem) + line(Words::restoreByLookup, plan.name) +
           line(Words::restoreTrashPath, trash) + line(Words::restoreTargetDirectory, plan.folder) +
           line(Words::restoreFileName, plan.name);
}

} // namespace

std::optional<int> TrashRestoreFastPath::run(int count, char* words[])
{
    const auto request = plainRequest(count, words);
    const auto trash = request ? platform::XdgHomes::plainHomeTrash() : std::nullopt;
    const auto plans = trash ? planOf(*request, *trash) : std::nullopt;
    if (!plans)
        return std::nullopt;
    std::string out;
    std::string said;
    int failed = 0;
    for (size_t i = 0; i < plans->size(); ++i) {
        const Plan& plan = (*plans)[i];
        if (!platform::TrashItem::putBack(plan.item.place, plan.absolute)) {
            // Something took the name or the item since it was looked at: before any change lumaro-cli-light
            // may still do it all and say what failed, after one it is said here.
            if (i == 0)
                return std::nullopt;
            ++failed;
            said += "lumaro-cli trash: " + escapedLineBytes(plan.given) +
                    ": cannot put back (not in the Trash, or a file of that name is already there)\n";
            continue;
        }
        if (!request->quiet)
            said += restoreLog(plan, *trash) +
                    logLine(Words::tag, std::string(Words::restoreDone) + plan.absolute) +
                    logLine(Words::tag, Words::restoreFinished);
        out += escapedLineBytes(plan.absolute) + "\n";
    }
    writeAll(stderr, said);
    writeAll(stdout, out);
    return failed == 0 ? exitOk : exitPartial;
}

} // namespace lumaro::cli
