// SPDX-License-Identifier: GPL-3.0-or-later
// Sends the RAW files that have no JPG partner to the Trash, one by one, and says what it freed.
#pragma once

#include "cards/CleanResult.h"

#include <QStringList>

#include <functional>

namespace lumaro::platform {
class Trash;
}

namespace lumaro::cards {

// Nothing is deleted outright: every file goes through the Trash it is given and can be put back from there.
// A file that cannot be moved (gone meanwhile, no permission, no usable Trash) is logged and skipped; the run goes on
// and the result counts it. Blocking; any thread. `progress` is called on the calling thread after each file.
class PairingCleaner
{
public:
    using Progress = std::function<void(double done)>;

    explicit PairingCleaner(platform::Trash& trash);

    CleanResult clean(const QStringList& unmatchedFiles, const Progress& progress = {}) const;

    static QString completionMessage(int count, qint64 freedBytes);
    static QString freedOnlyMessage(qint64 freedBytes);
    static QString partialFailureMessage();
    static QString failureMessage();

private:
    platform::Trash& m_trash;
};

} // namespace lumaro::cards
