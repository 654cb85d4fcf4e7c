// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FileReplacer.h"

#include "platform/files/FileNameCodec.h"
#include "platform/files/FileRewrite.h"

#include <cstring>

namespace lumaro::platform {

namespace {

bool finish(bool done, const FileRewrite& rewrite, QString* error)
{
    if (!done && error)
        *error = QString::fromLocal8Bit(std::strerror(rewrite.error()));
    return done;
}

} // namespace

bool FileReplacer::replaceContents(const QString& path, const QByteArray& contents, QString* error)
{
    FileRewrite rewrite = FileRewrite::forExistingFile(FileNameCodec::encode(path).toStdString(),
                                                       std::string_view(contents.constData(), contents.size()));
    return finish(rewrite.replace(), rewrite, error);
}

bool FileReplacer::createFile(const QString& path, const QByteArray& contents, QString* error)
{
    FileRewrite rewrite = FileRewrite::forNewFile(FileNameCodec::encode(path).toStdString(),
                                                  std::string_view(contents.constData(), contents.size()));
    return finish(rewrite.create(), rewrite, error);
}

} // namespace lumaro::platform
