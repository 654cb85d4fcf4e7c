// SPDX-License-Identifier: GPL-3.0-or-later
// The roll's album page: one static index.html with its style and a few lines of script inside, so it works
// from any static host, bucket website or a folder opened in a browser, with no server code.
#pragma once

#include "rolls/RollStage.h"

#include <QList>
#include <QString>

namespace lumaro::rolls {

class AlbumPage
{
public:
    // Pictures in the order given, captions from their names, a filter by colour tag. Written as well-formed
    // XHTML-compatible HTML, so a plain XML reader can check it.
    static QString html(const QString& title, const QList<StagedPicture>& pictures);
    static bool write(const QString& path, const QString& title, const QList<StagedPicture>& pictures,
                      QString* error);
};

} // namespace lumaro::rolls
