// SPDX-License-Identifier: GPL-3.0-or-later
// What rclone prints, as a damaged install, another version or a hostile remote may make it: its log on
// standard error (read whole and in pieces of the size the first byte gives, which must read the same), the
// free space `about` reports and the files `lsjson` lists. No figure may come back negative.
#include "fuzz/FuzzScratch.h"
#include "platform/cloud/Rclone.h"
#include "platform/cloud/RcloneLogReader.h"

using namespace lumaro;
using platform::RcloneProgress;

namespace {

struct ReadLog
{
    QStringList errors;
    QList<RcloneProgress> reported;
    QString lastPlainLine;
};

ReadLog read(const QByteArray& log, qsizetype piece)
{
    ReadLog read;
    platform::RcloneLogReader reader([&](const RcloneProgress& progress) { read.reported << progress; });
    for (qsizetype at = 0; at < log.size(); at += piece)
        reader.feed(log.mid(at, piece));
    reader.finish();
    fuzz::require(read.reported.isEmpty() || reader.last() == read.reported.constLast(),
                  "the last statistics are the last reported");
    read.errors = reader.errors();
    read.lastPlainLine = reader.lastPlainLine();
    return read;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray bytes = fuzz::bytesOf(data + 1, size - 1);
    const ReadLog whole = read(bytes, std::max<qsizetype>(bytes.size(), 1));
    const ReadLog cut = read(bytes, data[0] % 32 + 1);
    fuzz::require(cut.errors == whole.errors && cut.reported == whole.reported &&
                      cut.lastPlainLine == whole.lastPlainLine,
                  "the log reads the same whatever pieces it arrives in");
    for (const RcloneProgress& progress : whole.reported)
        fuzz::require(progress.bytes >= 0 && progress.totalBytes >= 0 && progress.transfers >= 0 &&
                          progress.errors >= 0,
                      "statistics are counts");

    const std::optional<qint64> free = platform::Rclone::freeBytesIn(bytes);
    fuzz::require(!free || *free >= 0, "free space is a count");
    for (const qint64 fileSize : platform::Rclone::fileSizesIn(bytes))
        fuzz::require(fileSize >= 0, "file sizes are counts");
    return 0;
}
