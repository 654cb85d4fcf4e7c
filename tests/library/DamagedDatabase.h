// SPDX-License-Identifier: GPL-3.0-or-later
// Damage done to a database file the way a bad sector or a stray write does it, for the tests of what the
// store does with a file it cannot trust.
#pragma once

#include <QByteArray>
#include <QString>

namespace lumaro::testing {

// Points the first cell of the table page that stores `marker` far outside its page. SQLite's quick check
// finds that; a write at the other end of the table never reads the page, so it would go through unnoticed.
// The file must be closed (no WAL left). False when no table page holds `marker`.
bool damageTablePageHolding(const QString& databasePath, const QByteArray& marker);

} // namespace lumaro::testing
