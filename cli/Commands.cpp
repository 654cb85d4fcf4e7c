// SPDX-License-Identifier: GPL-3.0-or-later
// Built three times: into `lumaro-cli-light` (exif and heavy commands without a run function, so their
// libraries are never linked), with LUMARO_CLI_EXIF_SIDE into `lumaro-cli-exif` (light and exif commands) and
// with LUMARO_CLI_HEAVY_SIDE into `lumaro-cli-heavy` (every command runs in-process).
#include "cli/Commands.h"

namespace lumaro::cli {

const std::vector<Command>& commands()
{
#define LIGHT(name, summary, run) {QStringLiteral(name), QStringLiteral(summary), &run},
#ifdef LUMARO_CLI_HEAVY_SIDE
#define HEAVY(name, summary, run) {QStringLiteral(name), QStringLiteral(summary), &run},
#define PAINTING(name, summary, run) {QStringLiteral(name), QStringLiteral(summary), &run, true},
#else
#define HEAVY(name, summary, run) {QStringLiteral(name), QStringLiteral(summary), nullptr},
#endif
#if defined(LUMARO_CLI_HEAVY_SIDE) || defined(LUMARO_CLI_EXIF_SIDE)
#define EXIF(name, summary, run) {QStringLiteral(name), QStringLiteral(summary), &run},
#define SPLIT(name, summary, lightRun, exifRun) {QStringLiteral(name), QStringLiteral(summary), &exifRun},
#else
#define SPLIT(name, summary, lightRun, exifRun) {QStringLiteral(name), QStringLiteral(summary), &lightRun},
#define EXIF(name, summary, run)                                                                             \
    {QStringLiteral(name), QStringLiteral(summary), nullptr, false, "lumaro-cli-exif"},
#endif
#ifndef LUMARO_CLI_HEAVY_SIDE
#define PAINTING(name, summary, run) {QStringLiteral(name), QStringLiteral(summary), nullptr, true},
#endif
    static const std::vector<Command> table{
#include "cli/CommandTable.h"
    };
#undef LIGHT
#undef HEAVY
#undef EXIF
#undef SPLIT
#undef PAINTING
    return table;
}

} // namespace lumaro::cli
