// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli card MOUNT: which camera family formatted a memory card, and what is on it.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"

#include "cards/ByteCountFormatter.h"
#include "cards/CardReco.h"
#include "cards/CardScanner.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::cli {

int runCard(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("card"),
                     QStringLiteral("Recognise the camera family of the memory card mounted at MOUNT by its folder "
                                    "layout (Canon R, Canon IXUS) and count its pictures and videos."));
    line.addPositional(QStringLiteral("MOUNT"), QStringLiteral("The card's mount path."));
    line.addJsonOption();
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto checked = line.folderArgument(QStringLiteral("card takes one mount path"));
    if (!checked)
        return exitUsage;
    const QString mount = *checked;

    const auto recognition = cards::CardReco::recognize(mount);
    const cards::CameraType type = recognition ? recognition->cameraType : cards::CameraType::unknown;
    const cards::NewFileInfo files = cards::CardScanner::scan(mount);
    QTextStream& out = standardOutput();
    if (!recognition) {
        if (line.json()) {
            out << QJsonDocument(QJsonObject{{QStringLiteral("recognised"), false},
                                             {QStringLiteral("jpgFiles"), files.jpgFiles.size()},
                                             {QStringLiteral("rawFiles"), files.rawFiles.size()},
                                             {QStringLiteral("videoFiles"), files.videoFiles.size()},
                                             {QStringLiteral("totalSize"), files.totalSize}})
                       .toJson(QJsonDocument::Compact)
                << "\n";
        } else {
            out << "Not recognised: neither a Canon R nor a Canon IXUS card layout.\n"
                << "Importable: JPG " << files.jpgFiles.size() << ", RAW " << files.rawFiles.size() << ", video "
                << files.videoFiles.size() << " (" << cards::ByteCountFormatter::string(files.totalSize) << ")\n";
        }
        out.flush();
        return exitOk;
    }
    const cards::DigitalCardStats stats = cards::CardReco::statistics(mount, type);
    if (line.json()) {
        out << QJsonDocument(QJsonObject{{QStringLiteral("recognised"), true},
                                         {QStringLiteral("family"), cards::familyName(type)},
                                         {QStringLiteral("matchInformation"), recognition->matchInformation},
                                         {QStringLiteral("jpgCount"), stats.jpgCount},
                                         {QStringLiteral("rawFormat"), stats.rawFormat},
                                         {QStringLiteral("rawCount"), stats.rawCount},
                                         {QStringLiteral("videoFormat"), stats.videoFormat},
                                         {QStringLiteral("videoCount"), stats.videoCount},
                                         {QStringLiteral("cameraMakeModel"), stats.cameraMakeModel},
                                         {QStringLiteral("totalSize"), files.totalSize}})
                   .toJson(QJsonDocument::Compact)
            << "\n";
    } else {
        out << cards::familyName(type) << "\n" << recognition->matchInformation << "\n";
        if (!stats.cameraMakeModel.isEmpty())
            out << "Camera: " << stats.cameraMakeModel << "\n";
        out << "JPG: " << stats.jpgCount << "\n";
        if (!stats.rawFormat.isEmpty())
            out << stats.rawFormat << ": " << stats.rawCount << "\n";
        out << stats.videoFormat << ": " << stats.videoCount << "\n";
        out << "Importable: " << files.fileCount() << " files (" << cards::ByteCountFormatter::string(files.totalSize)
            << ")\n";
    }
    out.flush();
    return exitOk;
}

} // namespace lumaro::cli
