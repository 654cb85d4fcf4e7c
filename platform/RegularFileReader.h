// SPDX-License-Identifier: GPL-3.0-or-later
// Reads a small file that may have been put there by someone else: only a regular file, only up to a cap.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace lumaro::platform {

// Thread-safe, blocking, but never waits on a FIFO or a device: the file is opened without blocking and
// checked to be a regular file (a symlink is followed to what it names) before anything is read. A file
// above maxBytes is refused without being read.
class RegularFileReader
{
public:
    static std::optional<QByteArray> read(const QString& path, qint64 maxBytes, QString* error = nullptr);
};

} // namespace lumaro::platform
