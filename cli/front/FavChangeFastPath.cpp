// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/front/FavChangeFastPath.h"

#include "cli/ExitCode.h"
#include "cli/front/FavStoreAccess.h"
#include "cli/front/JsonText.h"
#include "cli/front/WriteAll.h"

#include "library/FavourTable.h"
#include "library/FavourTypeNames.h"
#include "library/FavouritesSchema.h"
#include "library/StoreSession.h"
#include "platform/Clock.h"
#include "platform/files/CleanAbsolutePath.h"
#include "platform/files/PathKind.h"
#include "platform/files/XdgHomes.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace lumaro::cli {

namespace {

using library::FavouritesSchema;

struct Request
{
    enum class Change
    {
        favour,
        unfavour,
        type
    };
    Change change = Change::favour;
    std::optional<std::string> type; // for Change::type: the stored text, or nullopt to clear the type
    bool quiet = false;
    bool json = false;
    std::vector<std::string> paths;

    // Whether the pictures become favourites (and so must exist, and may be copied).
    bool marks() const { return change == Change::favour || (change == Change::type && type); }
};

bool isNone(std::string_view word)
{
    return word.size() == 4 && std::equal(word.begin(), word.end(), "none",
                                          [](char a, char b) { return (a | 0x20) == b; });
}

// `fav type TYPE`: a type named in ASCII, or "none"; what else Qt might read as one is left to it.
bool takeType(std::string_view word, Request& request)
{
    if (isNone(word))
        return true;
    const auto type = library::favourTypeFromAscii(word);
    if (!type)
        return false;
    request.type = std::string(library::storedTypeText(*type));
    return true;
}

std::optional<Request> plainRequest(int count, char* words[])
{
    Request request;
    std::optional<std::string_view> subcommand;
    std::optional<std::string_view> typeWord;
    for (int i = 0; i < count; ++i) {
        const std::string_view word = words[i];
        if (word == "-q" || word == "--quiet")
            request.quiet = true;
        else if (word == "--json")
            request.json = true;
        else if (word.empty() || word.front() == '-')
            return std::nullopt; // other options and "--" are lumaro-cli-light's
        else if (!subcommand)
            subcommand = word;
        else if (subcommand == "type" && !typeWord)
            typeWord = word;
        else
            request.paths.emplace_back(word);
    }
    if (request.paths.empty())
        return std::nullopt;
    if (subcommand == "add")
        request.change = Request::Change::favour;
    else if (subcommand == "remove")
        request.change = Request::Change::unfavour;
    else if (subcommand == "type" && typeWord && takeType(*typeWord, request))
        request.change = Request::Change::type;
    else
        return std::nullopt;
    return request;
}

// What lumaro-cli-light would mark without a word: something is there (a link counts, as it does for
// FileNameCodec::exists) and it is not a folder.
bool isMarkable(const std::string& path)
{
    return platform::PathKind::exists(path.c_str()) && !platform::PathKind::isDirectory(path.c_str());
}

// Whether the settings cannot be switching the favourites copy on: there is no settings file, or it does not
// name that setting. Read plainly, so an unreadable file or unusual homes answer false.
bool copyIsSurelyOff()
{
    const auto configDir = platform::XdgHomes::plainAppDir(platform::XdgHomes::Home::config);
    if (!configDir)
        return false;
    std::ifstream settings(*configDir + "/lumaro.conf", std::ios::binary);
    if (!settings)
        return errno == ENOENT;
    const std::string text{std::istreambuf_iterator<char>(settings), std::istreambuf_iterator<char>()};
    return !settings.bad() && text.find(FavouritesSchema::copyEnabledKey) == std::string::npos;
}

} // namespace

std::optional<int> FavChangeFastPath::run(int count, char* words[])
{
    auto request = plainRequest(count, words);
    if (!request || (request->marks() && !copyIsSurelyOff()))
        return std::nullopt;
    std::vector<std::string> cleaned;
    for (const std::string& path : request->paths) {
        auto clean = platform::CleanAbsolutePath::of(path);
        if (!clean || (request->marks() && !isMarkable(path)))
            return std::nullopt;
        cleaned.push_back(std::move(*clean));
    }
    const auto databasePath = plainFavouritesPath();
    if (!databasePath)
        return std::nullopt;

    // Everything is said at the end, so a store refused here (whatever its checks logged is dropped with it)
    // leaves lumaro-cli-light to say it all once.
    std::string said;
    const auto sink = [&](std::string_view tag) {
        return [&, tag](const std::string& message) {
            if (!request->quiet)
                said += logLine(tag, message);
        };
    };
    library::StoreSession session(sink(FavouritesSchema::databaseLogTag));
    library::FavourTable table(session, sink(FavouritesSchema::favouritesLogTag));
    if (!session.open(*databasePath, false) || !table.isSetUp() || !session.checkIntegrity())
        return std::nullopt;
    said = request->quiet ? std::string() : openedStoreLogLines(*databasePath);

    std::string out;
    int failed = 0;
    for (size_t i = 0; i < cleaned.size(); ++i) {
        const std::string& path = request->paths[i];
        const double now = platform::systemSeconds();
        const auto changed = request->change == Request::Change::type
                                 ? table.setType(path, cleaned[i], now, request->type)
                                 : table.setFavour(path, cleaned[i], now, request->marks());
        if (request->change == Request::Change::type && !request->type && !request->quiet)
            said += logLine(FavouritesSchema::favouritesLogTag,
                            changed.ok ? FavouritesSchema::typeClearedLog : FavouritesSchema::typeClearFailedLog);
        // A message, and with --json its line on standard output too, as CommandLine::fail words them.
        const auto fail = [&](const std::string& message, int code) {
            said += "lumaro-cli fav: " + message + "\n";
            if (request->json)
                out += "{\"error\":" + jsonString(message) + ",\"exitCode\":" + std::to_string(code) + "}\n";
        };
        if (!changed.ok) {
            fail("could not save: " + path, exitPartial);
            ++failed;
        } else if (!changed.saved) {
            fail("not a favourite: " + path, exitOk);
        }
    }
    writeAll(stderr, said);
    writeAll(stdout, out);
    return failed == 0 ? exitOk : exitPartial;
}

} // namespace lumaro::cli
