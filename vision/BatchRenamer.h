// SPDX-License-Identifier: GPL-3.0-or-later
// Renames a list of files inside one folder, never over an existing entry, going on past each failure.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>

namespace lumaro::vision {

struct NameRename
{
    QString from;
    QString to;
};

// Renames `from` to `to` (full paths) without replacing anything; false with `error` set on failure.
using RenameFunction = std::function<bool(const QString& from, const QString& to, QString* error)>;

struct BatchRenameReport
{
    QList<NameRename> renamed; // done, or under a dry run those that would be
    QStringList skipped;       // names left alone because their new name is taken
    QStringList failures;      // "old -> new: reason"
};

// Blocking; any thread. Both names of every rename are plain names inside `folder`. A target that exists is
// logged "文件已存在，跳过: " and skipped; a failed rename is logged with `failureText` and the reason and
// leaves the file as it was. A dry run checks the targets the same way and renames nothing. A picture's XMP
// sidecars take its new name with it (IMG_1.CR2.xmp → _G1_IMG_1.CR2.xmp).
class BatchRenamer
{
public:
    BatchRenamer(RenameFunction rename, QString failureText);

    BatchRenameReport run(const QString& folder, const QList<NameRename>& renames, bool dryRun,
                          const std::function<void(int done, int total)>& progress = {}) const;

private:
    void renameSidecars(const QStringList& sidecars, const QString& from, const QString& to) const;

    RenameFunction m_rename;
    QString m_failureText;
};

} // namespace lumaro::vision
