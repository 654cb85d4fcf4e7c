// SPDX-License-Identifier: GPL-3.0-or-later
// The table of lumaro-cli commands (the list itself is cli/CommandTable.h). Each command lives in its own
// file and is a thin call into a module.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace lumaro::cli {

using RunCommand = int (*)(const QStringList& arguments);

struct Command
{
    QString name;
    QString summary;
    // Takes the words after the command's name; returns the process exit code (ExitCode.h). Null in
    // `lumaro-cli` for a heavy command: main() hands it over to `lumaro-cli-heavy`.
    RunCommand run = nullptr;
    // Paints (a PDF needs fonts), so lumaro-cli-heavy makes a QGuiApplication, on the offscreen platform, for it.
    bool paints = false;
};

const std::vector<Command>& commands();

// One declaration per command file.
#define LIGHT(name, summary, run) int run(const QStringList& arguments);
#define HEAVY(name, summary, run) int run(const QStringList& arguments);
#define PAINTING(name, summary, run) int run(const QStringList& arguments);
#include "cli/CommandTable.h"
#undef LIGHT
#undef HEAVY
#undef PAINTING

} // namespace lumaro::cli
