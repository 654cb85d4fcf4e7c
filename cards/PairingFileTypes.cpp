// SPDX-License-Identifier: GPL-3.0-or-later
#include "cards/PairingFileTypes.h"

#include <QSet>

namespace lumaro::cards {

namespace {

// Every suffix is one dot followed by letters and digits, so "ends with one of them" is the same test as "the
// part from the last dot is one of them", which a set answers without walking the list.
bool hasAnySuffix(const QString& name, const QSet<QString>& suffixes)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    if (dot < 0)
        return false;
    return suffixes.contains(name.mid(dot));
}

const QSet<QString>& jpgSet()
{
    static const QSet<QString> set(PairingFileTypes::jpgSuffixes().cbegin(),
                                   PairingFileTypes::jpgSuffixes().cend());
    return set;
}

const QSet<QString>& rawSet()
{
    static const QSet<QString> set(PairingFileTypes::rawSuffixes().cbegin(),
                                   PairingFileTypes::rawSuffixes().cend());
    return set;
}

} // namespace

const QStringList& PairingFileTypes::jpgSuffixes()
{
    static const QStringList list{QStringLiteral(".jpg"), QStringLiteral(".jpeg"), QStringLiteral(".JPG"),
                                  QStringLiteral(".JPEG")};
    return list;
}

const QStringList& PairingFileTypes::rawSuffixes()
{
    static const QStringList list = [] {
        QStringList suffixes;
        for (const char* suffix :
             {".cr2", ".CR2", ".cr3", ".CR3", ".crw", ".CRW", ".nef", ".NEF", ".nrw", ".NRW", ".arw", ".ARW",
              ".srw", ".SRW", ".raf", ".RAF", ".rwz", ".RWZ", ".orf", ".ORF", ".rw2", ".RW2", ".dng", ".DNG",
              ".dng", ".DNG", ".3fr", ".3FR", ".fff", ".FFF", ".iiq", ".IIQ", ".pef", ".PEF", ".dng", ".DNG",
              ".x3f", ".X3F", ".raw", ".RAW", ".bay", ".BAY", ".cap", ".CAP", ".dcs", ".DCS", ".dcr", ".DCR",
              ".drf", ".DRF", ".k25", ".K25", ".kdc", ".KDC", ".mos", ".MOS", ".mrw", ".MRW", ".r3d", ".R3D",
              ".rwl", ".RWL", ".srw", ".SRW", ".srf", ".SRF", ".sr2", ".SR2", ".srw", ".SRW", ".x3f", ".X3F"})
            suffixes.append(QString::fromLatin1(suffix));
        return suffixes;
    }();
    return list;
}

bool PairingFileTypes::isJpgName(const QString& name)
{
    return hasAnySuffix(name, jpgSet());
}

bool PairingFileTypes::isRawName(const QString& name)
{
    return hasAnySuffix(name, rawSet());
}

QString PairingFileTypes::stem(const QString& name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    return dot > 0 ? name.left(dot) : name;
}

QString PairingFileTypes::matchingKey(QStringView stem)
{
    // Decomposed first, so that lower-casing sees the base letter of "É" whichever way it was written.
    return stem.toString()
        .normalized(QString::NormalizationForm_D)
        .toLower()
        .normalized(QString::NormalizationForm_C);
}

} // namespace lumaro::cards
