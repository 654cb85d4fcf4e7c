// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/files/HiddenList.h"

#include "platform/RegularFileReader.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <optional>

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
    for (const QByteArray& line : content.split('\n')) {
        QByteArray name = line.trimmed();
        if (!name.isEmpty())
            names.push_back(std::move(name));
    }
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    return names;
}

std::vector<QByteArray> HiddenList::names(const QString& folder)
{
    const std::optional<QByteArray> content = RegularFileReader::read(listPath(folder), maxBytes);
    return content ? parse(*content) : std::vector<QByteArray>();
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
