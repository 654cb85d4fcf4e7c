// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/FileStamp.h"

#include "platform/files/FileNameCodec.h"

#include <sys/stat.h>

namespace lumaro::platform {

std::optional<FileStamp> FileStamp::of(const QString& path)
{
    struct stat info
    {
    };
    if (::stat(FileNameCodec::encode(path).constData(), &info) != 0)
        return std::nullopt;
    const auto ns = [](const timespec& time) { return qint64(time.tv_sec) * 1000000000 + time.tv_nsec; };
    return FileStamp{qint64(info.st_size), ns(info.st_mtim), ns(info.st_ctim)};
}

} // namespace lumaro::platform
