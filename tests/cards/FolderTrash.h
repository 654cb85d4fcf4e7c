// SPDX-License-Identifier: GPL-3.0-or-later
// A Trash that really moves files, into a folder of the test's choosing, and refuses the names it is told to.
#pragma once

#include "platform/Trash.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <mutex>

namespace lumaro::testing {

class FolderTrash final : public platform::Trash
{
public:
    explicit FolderTrash(QString folder) : m_folder(std::move(folder)) { QDir().mkpath(m_folder); }

    void refuse(const QString& fileName) { m_refused.insert(fileName); }

    std::optional<platform::TrashedItem> moveToTrash(const QString& path, QString* error) override
    {
        std::lock_guard lock(m_mutex);
        const QString name = QFileInfo(path).fileName();
        if (m_refused.contains(name)) {
            *error = QStringLiteral("Permission denied");
            return std::nullopt;
        }
        const QString target = QDir(m_folder).filePath(name);
        if (QFileInfo::exists(target) || !QFile::rename(path, target)) {
            *error = QStringLiteral("cannot move ") + path;
            return std::nullopt;
        }
        return platform::TrashedItem{target, {}};
    }

private:
    QString m_folder;
    QSet<QString> m_refused;
    std::mutex m_mutex;
};

} // namespace lumaro::testing
