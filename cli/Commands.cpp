// SPDX-License-Identifier: GPL-3.0-or-later
// Built twice: into `lumaro-cli` (heavy commands without a run function, so their libraries are never linked)
// and, with LUMARO_CLI_HEAVY_SIDE, into `lumaro-cli-heavy` (every command runs in-process).
#include "cli/Commands.h"

namespace lumaro::cli {

const std::vector<Command>& commands()
{
#define LIGHT(name, summary, run) {QStringLiteral(name), QStringLiteral(summary), &run},
#ifdef LUMARO_CLI_HEAVY_SIDE
#define HEAVY(name, summary, run) {QStringLiteral(name), QStringLiteral(summary), &run},
#define SPLIT(name, summary, lightRun, heavyRun) {QStringLiteral(name), QStringLiteral(summary), &heavyRun},
#define PAINTING(name, summary, run) {QStringLiteral(name), QStringLiteral(summary), &run, true},
#else
#define HEAVY(name, summary, run) {QStringLiteral(name), QStringLiteral(summary), nullptr},
#define SPLIT(name, summary, lightRun, heavyRun) {QStringLiteral(name), QStringLiteral(summary), &lightRun},
#define PAINTING(name, summary, run) {QStringLiteral(name), QStringLiteral(summary), nullptr, true},
#endif
    static const std::vector<Command> table{
#include "cli/CommandTable.h"
    };
#undef LIGHT
#undef HEAVY
#undef SPLIT
#undef PAINTING
    return table;
}

} // namespace lumaro::cli
