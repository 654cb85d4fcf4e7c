// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/process/ProcessHandOver.h"

#include "platform/files/FileNameCodec.h"

#include <QByteArray>

#include <cerrno>
#include <climits>
#include <cstring>
#include <vector>

#include <unistd.h>

namespace lumaro::platform {

QString handOverProcess(const QString& program, int argc, char* argv[])
{
    QByteArray path = FileNameCodec::encode(program);
    std::vector<char*> words{path.data()};
    for (int i = 1; i < argc; ++i)
        words.push_back(argv[i]);
    words.push_back(nullptr);
    ::execv(path.constData(), words.data());
    return QString::fromLocal8Bit(std::strerror(errno));
}

QString runningProgramFolder()
{
    char buffer[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", buffer, sizeof buffer);
    if (length <= 0 || length == static_cast<ssize_t>(sizeof buffer))
        return {};
    QByteArray path(buffer, length);
    path.truncate(path.lastIndexOf('/'));
    return FileNameCodec::decode(path);
}

} // namespace lumaro::platform
