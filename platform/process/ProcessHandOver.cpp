// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/process/ProcessHandOver.h"

#include "platform/files/FileNameCodec.h"
#include "platform/process/ExecHandOver.h"

#include <QByteArray>

#include <cstring>

namespace lumaro::platform {

QString handOverProcess(const QString& program, int argc, char* argv[])
{
    const int errorNumber = execInPlace(FileNameCodec::encode(program).constData(), argc, argv);
    return QString::fromLocal8Bit(std::strerror(errorNumber));
}

QString runningProgramFolder()
{
    const std::string folder = ownExecutableFolder();
    return FileNameCodec::decode(QByteArray::fromStdString(folder));
}

} // namespace lumaro::platform
