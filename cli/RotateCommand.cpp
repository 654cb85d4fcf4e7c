// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli rotate FILE…: turns each picture 90° to the left on disk, as the rotate key does.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"

#include "platform/files/FileNameCodec.h"

#include "platform/ImageRotator.h"

#include <QFileInfo>

namespace lumaro::cli {

namespace {

QString methodText(platform::RotationOutcome::Method method)
{
    switch (method) {
    case platform::RotationOutcome::Method::exifOrientation: return QStringLiteral("EXIF orientation, lossless");
    case platform::RotationOutcome::Method::cr2Orientation: return QStringLiteral("CR2 orientation tag, lossless");
    case platform::RotationOutcome::Method::pixels: return QStringLiteral("pixels rewritten");
    case platform::RotationOutcome::Method::none: break;
    }
    return {};
}

} // namespace

int runRotate(const QStringList& arguments)
{
    CommandLine line(QStringLiteral("rotate"), QStringLiteral("Turn each picture FILE 90 degrees to the left."));
    line.addPositional(QStringLiteral("FILE"), QStringLiteral("The pictures to turn."), QStringLiteral("FILE..."));
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto files = line.positional(1);
    if (!files)
        return exitUsage;
    for (const QString& file : *files) {
        if (!platform::FileNameCodec::isFile(file))
            return line.fail(QStringLiteral("%1: no such file (nothing was turned)").arg(escapedForLine(file)),
                             exitUsage);
    }

    QTextStream& out = standardOutput();
    int failed = 0;
    int unsupported = 0;
    for (const QString& file : *files) {
        using Status = platform::RotationOutcome::Status;
        const platform::RotationOutcome outcome = platform::ImageRotator::rotateLeft(file);
        const QString name = escapedForLine(file);
        switch (outcome.status) {
        case Status::rotated:
            out << name << ": turned left (" << methodText(outcome.method) << ")\n";
            break;
        case Status::needsDisplayRotation:
            ++failed;
            standardError() << "lumaro-cli rotate: " << name << ": "
                            << (outcome.error.isEmpty() ? QStringLiteral("this format is not rewritten")
                                                        : outcome.error)
                            << "; the app turns it on screen only (file unchanged)\n";
            break;
        case Status::unsupportedFormat:
            ++unsupported;
            standardError() << "lumaro-cli rotate: " << name << ": not a picture format that can be turned\n";
            break;
        case Status::failed:
            ++failed;
            standardError() << "lumaro-cli rotate: " << name << ": " << outcome.error << " (file unchanged)\n";
            break;
        }
    }
    out.flush();
    standardError().flush();
    if (unsupported == files->size())
        return exitUsage;
    return failed + unsupported > 0 ? exitPartial : exitOk;
}

} // namespace lumaro::cli
