// SPDX-License-Identifier: GPL-3.0-or-later
// One finished pairing clean, as kept in the panel's history.
#pragma once

#include "cards/FileFailure.h"

#include <QDateTime>
#include <QList>
#include <QString>

namespace lumaro::cards {

struct CleanResult
{
    QDateTime timestamp;
    int cleanedFilesCount = 0; // files moved to the Trash
    qint64 freedSpace = 0;
    bool success = false;
    QString message;           // the text shown to the user

    int failedFilesCount = 0;  // files that could not be moved (logged one by one)
    QList<FileFailure> failures; // as many as failedFilesCount
};

} // namespace lumaro::cards
