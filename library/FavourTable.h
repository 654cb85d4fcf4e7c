// SPDX-License-Identifier: GPL-3.0-or-later
// The favourites table's rows and the rule by which a mark changes, without Qt: FavourManager (the window,
// lumaro-cli-light) and lumaro-cli's own `fav add` and `fav remove` write through it.
#pragma once

#include "library/StoreSession.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumaro::library {

// One row as stored: paths and names as their bytes, the type as its stored text, dates in seconds since
// 1970-01-01 UTC.
struct FavourRow
{
    std::int64_t id = 0;
    std::string filePath;
    std::string fileName;
    bool isFavour = false;
    std::optional<std::string> favourType;
    double createdAt = 0;
    double updatedAt = 0;
};

// Runs on the session's thread, each call in the caller's transaction or none. Log lines (FavourManager's)
// go to `log`.
class FavourTable
{
public:
    using LogSink = StoreSession::LogSink;

    // The outcome of change(): `ok` false when a statement failed; `saved` empty when nothing was stored and
    // nothing had to be; `wasStored` when the picture had a row before.
    struct Change
    {
        bool ok = false;
        std::optional<FavourRow> saved;
        bool wasStored = false;
    };

    FavourTable(StoreSession& session, LogSink log);

    // Whether the table and the index FavourManager::open adds to older stores are there: a store it made or
    // opened since, which may be read and written without it.
    bool isSetUp();
    // Rows of "SELECT <every column> FROM favourites <clause>", e.g. clause "WHERE file_path = ?;".
    std::optional<std::vector<FavourRow>> select(std::string_view clause, const StoreValues& parameters);
    // Writes `row` as given; the stored row with its new id, or nullopt (logged).
    std::optional<FavourRow> insert(const FavourRow& row);
    // Writes `row` over the row of its id. Rows under `givenPath` (the other written form of the same
    // picture) or with no path at all would collide with or shadow it: they go first.
    bool update(const FavourRow& row, const std::string& givenPath);

    // The heart: marks or unmarks the picture `givenPath`, stored under its cleaned absolute form `cleanPath`
    // (both non-empty). Un-marking a picture without a row stores nothing.
    Change setFavour(const std::string& givenPath, const std::string& cleanPath, double now, bool isFavour);
    // The type button: stores the type's stored text and marks the picture a favourite; nullopt clears the
    // type only (and stores nothing for a picture without a row).
    Change setType(const std::string& givenPath, const std::string& cleanPath, double now,
                   const std::optional<std::string>& type);

    // What follows the last '/' of a cleaned path.
    static std::string fileNameOf(const std::string& cleanPath);

private:
    // One IMMEDIATE transaction: the row stored under either form gets `apply` (the one in the cleaned form
    // is kept when both are stored, the other merged away); a picture without a row gets `fresh()`, unless
    // that is nullopt.
    Change change(const std::string& givenPath, const std::string& cleanPath, double now,
                  const std::function<void(FavourRow&)>& apply,
                  const std::function<std::optional<FavourRow>()>& fresh);
    // Logs every row sharing `row`'s file name: two pictures of one name in different folders are the
    // usual cause of a mark showing on the wrong one.
    void logSameName(const FavourRow& row);

    StoreSession& m_session;
    LogSink m_log;
};

} // namespace lumaro::library
