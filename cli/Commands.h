// SPDX-License-Identifier: GPL-3.0-or-later
// The table of lumaro-cli commands (the list itself is cli/CommandTable.h). Each command lives in its own
// file and is a thin call into a module.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace lumaro::cli {

using RunCommand = int (*)(const QStringList& arguments);

// Returned by a command's light half in `lumaro-cli-light` for work that needs exiv2: main() hands the whole
// command line over to `lumaro-cli-exif`, before anything was done. Never a process exit code.
constexpr int handOverToExif = -1;

struct Command
{
    QString name;
    QString summary;
    // Takes the words after the command's name; returns the process exit code (ExitCode.h). Null in
    // `lumaro-cli-light` for a heavy command: main() hands it over to `lumaro-cli-heavy`.
    RunCommand run = nullptr;
    // Paints (a PDF needs fonts), so lumaro-cli-heavy makes a QGuiApplication, on the offscreen platform, for
    // it.
    bool paints = false;
    // The program a command without a run function is handed over to.
    const char* helper = "lumaro-cli-heavy";
};

const std::vector<Command>& commands();

// One declaration per command file.
#define LIGHT(name, summary, run) int run(const QStringList& arguments);
#define HEAVY(name, summary, run) int run(const QStringList& arguments);
#define EXIF(name, summary, run) int run(const QStringList& arguments);
#define PAINTING(name, summary, run) int run(const QStringList& arguments);
#define SPLIT(name, summary, lightRun, exifRun)                                                             \
    int lightRun(const QStringList& arguments);                                                              \
    int exifRun(const QStringList& arguments);
#include "cli/CommandTable.h"
#undef LIGHT
#undef HEAVY
#undef EXIF
#undef SPLIT
#undef PAINTING

} // namespace lumaro::cli
