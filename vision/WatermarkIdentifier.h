// SPDX-License-Identifier: GPL-3.0-or-later
// Finds a poster's identifier in a line of text read off a picture: "@name", "@名字", "ID: 12345678",
// "号：12345678".
#pragma once

#include <QString>

#include <optional>

namespace lumaro::vision {

struct WatermarkIdentifier
{
    enum class Kind
    {
        handle,
        number
    };
    Kind kind = Kind::handle;
    QString identifier; // "@name" for a handle, the value alone for an ID line ("12345678"); lower case
    QString text;       // the line it was read from

    // Pure functions; any thread. nullopt when the line holds no identifier. Full-width forms ("＠", "："),
    // and the spaces a reader puts around the "@" or the colon, are taken as the plain ones.
    static std::optional<WatermarkIdentifier> find(const QString& line);
    // The identifier as a folder name: "/" and control characters become "_"; never ".", ".." or empty.
    static QString folderName(const QString& identifier);
    static QString kindText(Kind kind);
};

} // namespace lumaro::vision
