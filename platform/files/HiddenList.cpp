// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/HiddenList.h"

#include "platform/RegularFileReader.h"
#include "platform/files/FileNameCodec.h"
#include "platform/files/VisibleEntries.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <optional>

#include <fcntl.h>
#include <unistd.h>

namespace lumaro::platform {

namespace {

QString listPath(const QString& folder)
{
    return QDir(folder).filePath(QStringLiteral(".hidden"));
}

} // namespace

std::vector<QByteArray> HiddenList::parse(const QByteArray& content)
{
    std::vector<QByteArray> names;
    for (const std::string& name :
         VisibleEntries::parseHiddenList(std::string_view(content.constData(), size_t(content.size()))))
        names.push_back(QByteArray::fromStdString(name));
    return names;
}

std::vector<QByteArray> HiddenList::names(const QString& folder)
{
    const int fd = ::open(FileNameCodec::encode(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return {};
    std::vector<QByteArray> names;
    for (const std::string& name : VisibleEntries::hiddenNames(fd))
        names.push_back(QByteArray::fromStdString(name));
    ::close(fd);
    return names;
}

bool HiddenList::add(const QString& folder, const QByteArray& name)
{
    const QString path = listPath(folder);
    QByteArray content;
    const QFileInfo info(path);
    if (info.exists() || info.isSymLink()) {
        const std::optional<QByteArray> existing = RegularFileReader::read(path, maxBytes);
        if (!existing)
            return false;
        content = *existing;
    }
    const std::vector<QByteArray> listed = parse(content);
    if (std::binary_search(listed.begin(), listed.end(), name))
        return true;
    if (!content.isEmpty() && !content.endsWith('\n'))
        content += '\n';
    content += name + '\n';
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.commit();
}

} // namespace lumaro::platform
