// SPDX-License-Identifier: GPL-3.0-or-later
// File names as the file system has them (bytes) and as Lumaro carries them (QString), without losing a byte.
#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

namespace lumaro::platform {

// Linux file names are bytes; old cards and network shares hold names that are not UTF-8 ("caf\xe9.jpg").
// Qt 6 decodes those to U+FFFD, after which no file operation finds the file again. This codec decodes
// valid UTF-8 as UTF-8 and each byte of an invalid sequence to the lone surrogate U+DC80…U+DCFF (the
// "surrogate escape" Python uses for the same purpose), and encodes back exactly. Every conversion of a
// path between Lumaro and the OS goes through here: decode(encode(s)) == s and encode(decode(b)) == b.
// Qt's own file classes (QFile, QFileInfo, QDir) re-encode with QFile::encodeName and miss such a name;
// code that must reach it uses these helpers or opens it here and hands Qt the descriptor.
// Pure functions; any thread.
class FileNameCodec
{
public:
    static QString decode(const QByteArray& native);
    static QByteArray encode(const QString& path);
    // Whether `path` holds a byte that is not UTF-8 (an escaped one).
    static bool hasRawBytes(const QString& path);
    // Whether the character at `i` stands for such a byte (the byte is its code minus 0xDC00).
    static bool isRawByteAt(const QString& path, qsizetype i);

    // What the file system says about `path`, never following a final symbolic link.
    static bool exists(const QString& path);
    static bool isFile(const QString& path);
    static bool isDirectory(const QString& path);
    // Whether this process may write `path` (a file, or a folder to create files in).
    static bool isWritable(const QString& path);
    // Removes the file (or the link itself) at `path`; false when it could not.
    static bool remove(const QString& path);
    // Opens `path` read-only (O_CLOEXEC); -1 on failure. The caller closes it (QFile::open(fd, …,
    // AutoCloseHandle)).
    static int openForReading(const QString& path);
    // Opens `path` read-only into `file` (which then owns the descriptor), for a Qt reader that would look
    // for the name under other bytes; false when it cannot be opened (errno kept).
    static bool openForReading(QFile& file, const QString& path);
    // The file's bytes (at most `limit` when it is not negative); empty with `ok` false when it cannot be
    // read.
    static QByteArray readAll(const QString& path, bool* ok = nullptr, qint64 limit = -1);
};

} // namespace lumaro::platform
