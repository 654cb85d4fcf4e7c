// SPDX-License-Identifier: GPL-3.0-or-later
// Byte counts as the user reads them on the panels: file sizes in megabytes or gigabytes only.
#pragma once

#include <QString>

namespace lumaro::cards {

// Decimal units as file managers count them (1 MB = 1,000,000 bytes): below a gigabyte the count is shown in MB
// with one decimal ("12.3 MB", "0.5 MB"), from there in GB with two ("1.25 GB"); trailing zeros are dropped and
// zero reads "Zero KB". A count that rounds to 1,000 MB is shown as "1 GB". Any thread.
class ByteCountFormatter
{
public:
    static QString string(qint64 bytes);
};

} // namespace lumaro::cards
