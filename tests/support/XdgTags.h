// SPDX-License-Identifier: GPL-3.0-or-later
// The "user.xdg.tags" extended attribute read and written byte for byte, past the stores under test.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace lumaro::testing {

// False where the file system keeps no user extended attributes (the caller skips).
bool setXdgTags(const QString& path, const QByteArray& value);
// The attribute's bytes; nullopt when the file has none.
std::optional<QByteArray> xdgTags(const QString& path);

} // namespace lumaro::testing
