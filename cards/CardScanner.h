// SPDX-License-Identifier: GPL-3.0-or-later
// Walks a whole memory card and sorts its pictures and videos into the kinds an import copies.
#pragma once

#include "cards/NewFileInfo.h"

#include <QString>

namespace lumaro::cards {

enum class MediaKind
{
    jpg,
    raw,
    video,
    other
};

// Kinds by lower-cased extension: "jpg"/"jpeg"; nine RAW formats (cr3 cr2 crw nef raf orf arw rw2 dng); five
// video formats (mp4 mov avi m4v mkv). Everything else (HEIC, THM, CTG, …) is left on the card. What the card
// hides stays there: hidden entries (".Trash-1000", ".Trashes", ".Spotlight-V100", ".fseventsd", macOS's
// "._IMG_1.JPG") and "System Volume Information" are neither entered nor copied, and are listed in
// skippedEntries. Links are not followed. Blocking; any thread.
class CardScanner
{
public:
    static MediaKind kindOf(const QString& fileName);
    static bool isHiddenOrSystem(const QString& entryName);
    // An empty result (logged) when the card cannot be walked.
    static NewFileInfo scan(const QString& mountPath);
};

} // namespace lumaro::cards
