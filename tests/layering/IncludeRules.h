// SPDX-License-Identifier: GPL-3.0-or-later
// The written-down layering: which module may include which, and who may reach the OS and Qt Widgets.
#pragma once

#include <QString>
#include <QStringList>

namespace lumaro::testing {

struct IncludeViolation
{
    QString file;
    int line = 0;
    QString include;
    QString reason;
};

// The module a repository-relative path belongs to ("browse/state/X.cpp" -> "browse"), or empty.
QString moduleOf(const QString& relativePath);

// Every include of `source` (the text of the file at `relativePath`) that breaks the rules.
QList<IncludeViolation> checkIncludes(const QString& relativePath, const QString& source);

} // namespace lumaro::testing
