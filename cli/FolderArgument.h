// SPDX-License-Identifier: GPL-3.0-or-later
// Checks a folder named on the command line before a command touches it.
#pragma once

#include <QString>

#include <optional>

namespace lumaro::cli {

// nullopt when `path` is a readable, listable folder; otherwise the reason in words a user understands
// ("no such folder", "is a file, not a folder", "cannot be read: permission denied").
std::optional<QString> problemWithFolder(const QString& path);

// nullopt when `path` is a folder this process may write files into, created with its parents when missing;
// otherwise the reason ("is a file, not a folder", "cannot create the folder", "a read-only folder"). Asked
// before a command decodes or analyses anything, so that a whole run is not done for nothing.
std::optional<QString> problemWithOutputFolder(const QString& path);

} // namespace lumaro::cli
