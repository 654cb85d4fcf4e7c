// SPDX-License-Identifier: GPL-3.0-or-later
// Which names the pairing clean and the RAW pick take as JPG or RAW: a case-sensitive suffix test against
// fixed lists.
#pragma once

#include <QString>
#include <QStringList>

namespace lumaro::cards {

// The case variants are spelled out in the lists, so IMG_1.Jpg or IMG_1.Cr2 is neither JPG nor RAW. The RAW
// list keeps its repeated entries as they stand; a name is taken once as soon as any suffix matches. Any
// thread.
class PairingFileTypes
{
public:
    static const QStringList& jpgSuffixes();
    static const QStringList& rawSuffixes();

    static bool isJpgName(const QString& name);
    static bool isRawName(const QString& name);
    // The name with its last extension removed ("A.B.CR2" -> "A.B"); a leading dot is not an extension.
    static QString stem(const QString& name);
    // Two stems name the same shot when their keys are equal: canonically equivalent (NFC and NFD spellings
    // of "café" are one name), then compared without case.
    static QString matchingKey(QStringView stem);
};

} // namespace lumaro::cards
