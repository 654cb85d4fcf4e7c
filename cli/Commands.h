// SPDX-License-Identifier: GPL-3.0-or-later
// The table of lumaro-cli commands. Each command lives in its own file and is a thin call into a module.
#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace lumaro::cli {

struct Command
{
    QString name;
    QString summary;
    // Takes the words after the command's name; returns the process exit code (ExitCode.h).
    int (*run)(const QStringList& arguments);
    // Paints (a PDF needs fonts), so main() makes a QGuiApplication, on the offscreen platform, for it.
    bool paints = false;
};

const std::vector<Command>& commands();

// One declaration per command file.
int runList(const QStringList& arguments);
int runPose(const QStringList& arguments);
int runThumbs(const QStringList& arguments);
int runTrash(const QStringList& arguments);
int runTags(const QStringList& arguments);
int runRotate(const QStringList& arguments);
int runIndex(const QStringList& arguments);
int runFav(const QStringList& arguments);
int runChannel(const QStringList& arguments);
int runBundle(const QStringList& arguments);
int runGroup(const QStringList& arguments);
int runUngroup(const QStringList& arguments);
int runWatermark(const QStringList& arguments);

int runClean(const QStringList& arguments);
int runPick(const QStringList& arguments);
int runCard(const QStringList& arguments);
int runImport(const QStringList& arguments);

int runReport(const QStringList& arguments);
int runHistogram(const QStringList& arguments);

int runRoll(const QStringList& arguments);

} // namespace lumaro::cli
