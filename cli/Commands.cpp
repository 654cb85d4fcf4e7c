// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/Commands.h"

namespace lumaro::cli {

const std::vector<Command>& commands()
{
    static const std::vector<Command> table{
        {QStringLiteral("list"), QStringLiteral("Print a folder's pictures in browsing order"), &runList},
        {QStringLiteral("pose"), QStringLiteral("Name each person's pose (level 1 and 2) with its reason"), &runPose},
        {QStringLiteral("thumbs"), QStringLiteral("Write a JPEG thumbnail of every picture of a folder"), &runThumbs},
        {QStringLiteral("trash"), QStringLiteral("Move files to the Trash and print where each went"), &runTrash},
        {QStringLiteral("tags"), QStringLiteral("Print a picture's tags, or toggle one colour tag"), &runTags},
        {QStringLiteral("rotate"), QStringLiteral("Turn pictures 90 degrees to the left on disk"), &runRotate},
        {QStringLiteral("index"), QStringLiteral("Analyse a folder's pictures into _index/vision_index_*.json"), &runIndex},
        {QStringLiteral("fav"), QStringLiteral("Mark pictures as favourites, list and audit them"), &runFav},
        {QStringLiteral("channel"), QStringLiteral("Add, list, rename, move or remove the window's folder channels"), &runChannel},
        {QStringLiteral("bundle"), QStringLiteral("Gather pictures from any folders into named bundles and export them"), &runBundle},
        {QStringLiteral("group"), QStringLiteral("Prefix each run of related pictures with \"_G<n>_\""), &runGroup},
        {QStringLiteral("ungroup"), QStringLiteral("Take the \"_G<n>_\" group prefixes off again"), &runUngroup},
        {QStringLiteral("watermark"), QStringLiteral("Read poster identifiers off saved pictures; sort them by poster"), &runWatermark},
        {QStringLiteral("clean"), QStringLiteral("Show, or with --yes trash, the RAW files whose JPG was not kept"), &runClean},
        {QStringLiteral("pick"), QStringLiteral("Copy the RAW files that have a JPG into RAW_PICK"), &runPick},
        {QStringLiteral("card"), QStringLiteral("Recognise a memory card's camera family and count its files"), &runCard},
        {QStringLiteral("import"), QStringLiteral("Import a memory card into the next rollNN folder"), &runImport},
        {QStringLiteral("report"), QStringLiteral("The shooting report of a folder: exposures, pace, lenses, culling"), &runReport,
         true},
        {QStringLiteral("histogram"), QStringLiteral("The tone histogram of a picture and its clipped shares"), &runHistogram},
        {QStringLiteral("roll"), QStringLiteral("Publish a folder as an online album on your own storage (rclone)"), &runRoll},
    };
    return table;
}

} // namespace lumaro::cli
