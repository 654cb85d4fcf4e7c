// SPDX-License-Identifier: GPL-3.0-or-later
// The two halves of `lumaro-cli tags`: the reading one linked into lumaro-cli-light, the sidecar writer into
// lumaro-cli-exif (and lumaro-cli-heavy).
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace lumaro::cli {

// Writes the colours among `tags` into the picture's XMP sidecar.
using SidecarColourWriter = std::function<bool(const QString& file, const QStringList& tags, QString* error)>;

// Without a writer a toggle returns handOverToExif before anything is changed.
int runTagsWith(const QStringList& arguments, const SidecarColourWriter& writeSidecar);

} // namespace lumaro::cli
