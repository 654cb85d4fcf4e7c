// SPDX-License-Identifier: GPL-3.0-or-later
// lumaro-cli rate FILE… (--stars N | --pick | --reject | --clear): stars and picks into the XMP sidecars.
#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/ExitCode.h"

#include "browse/marks/PictureRater.h"
#include "platform/files/FileNameCodec.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace lumaro::cli {

namespace {

QString flagText(platform::PickFlag flag)
{
    switch (flag) {
    case platform::PickFlag::picked:
        return QStringLiteral("picked");
    case platform::PickFlag::rejected:
        return QStringLiteral("rejected");
    case platform::PickFlag::none:
        break;
    }
    return QStringLiteral("none");
}

QJsonObject marksJson(const platform::PictureMarks& marks)
{
    return {{QStringLiteral("stars"), marks.stars},
            {QStringLiteral("flag"), flagText(marks.flag)},
            {QStringLiteral("rating"), marks.flag == platform::PickFlag::rejected ? -1 : marks.stars}};
}

QString marksText(const platform::PictureMarks& marks)
{
    QString text = QString::number(marks.stars) + QStringLiteral(" stars");
    if (marks.flag != platform::PickFlag::none)
        text += QStringLiteral(", ") + flagText(marks.flag);
    return text;
}

} // namespace

int runRate(const QStringList& arguments)
{
    CommandLine line(
        QStringLiteral("rate"),
        QStringLiteral("Give each picture FILE stars, a pick or a reject, written to its XMP sidecar "
                       "(xmp:Rating, -1 for a reject; digiKam:PickLabel), which darktable, digiKam and "
                       "Lightroom read. Without an option, prints each picture's rating."));
    line.addPositional(QStringLiteral("FILE"), QStringLiteral("The pictures."), QStringLiteral("FILE..."));
    line.addOption({QStringLiteral("stars"), QStringLiteral("Set N stars (0-5); takes a reject back."),
                    QStringLiteral("N")});
    line.addOption({QStringLiteral("pick"), QStringLiteral("Mark as picked (keeps the stars).")});
    line.addOption({QStringLiteral("reject"), QStringLiteral("Mark as rejected (drops the stars).")});
    line.addOption({QStringLiteral("clear"), QStringLiteral("No stars, no pick, no reject.")});
    line.addJsonOption();
    if (const auto stop = line.parse(arguments))
        return *stop;
    const auto files = line.positional(1);
    if (!files)
        return exitUsage;

    const QStringList choices{QStringLiteral("stars"), QStringLiteral("pick"), QStringLiteral("reject"),
                              QStringLiteral("clear")};
    std::optional<browse::RatingChange> change;
    int chosen = 0;
    for (const QString& choice : choices)
        chosen += line.isSet(choice) ? 1 : 0;
    if (chosen > 1)
        return line.usageError(QStringLiteral("give one of --stars, --pick, --reject, --clear"));
    if (line.isSet(QStringLiteral("stars"))) {
        const auto stars = line.number(QStringLiteral("stars"), 0, 5);
        if (!stars)
            return line.usageError(QStringLiteral("--stars takes a whole number from 0 to 5, not \"%1\"")
                                       .arg(line.value(QStringLiteral("stars"))));
        change = browse::RatingChange::toStars(*stars);
    } else if (line.isSet(QStringLiteral("pick"))) {
        change = browse::RatingChange{browse::RatingChange::Kind::pick};
    } else if (line.isSet(QStringLiteral("reject"))) {
        change = browse::RatingChange{browse::RatingChange::Kind::reject};
    } else if (line.isSet(QStringLiteral("clear"))) {
        change = browse::RatingChange{browse::RatingChange::Kind::clear};
    }
    for (const QString& file : *files) {
        if (!platform::FileNameCodec::isFile(file))
            return line.fail(QStringLiteral("%1: no such file (nothing was rated)").arg(escapedForLine(file)),
                             exitUsage);
        if (platform::XmpSidecar::isSidecarName(file))
            return line.fail(
                QStringLiteral("%1: a sidecar, not a picture (nothing was rated)").arg(escapedForLine(file)),
                exitUsage);
    }

    QTextStream& out = standardOutput();
    QJsonArray results;
    int failed = 0;
    for (const QString& file : *files) {
        QString error;
        const auto marks = change ? browse::PictureRater::shared().apply(file, *change, &error)
                                  : platform::XmpSidecar::read(file, &error);
        if (!marks) {
            ++failed;
            standardError() << "lumaro-cli rate: " << escapedForLine(error) << " (unchanged)\n";
            continue;
        }
        if (line.json()) {
            QJsonObject entry = marksJson(*marks);
            entry.insert(QStringLiteral("file"), file);
            results.append(entry);
        } else {
            out << escapedForLine(file) << ": " << marksText(*marks) << "\n";
        }
    }
    if (line.json())
        out << QJsonDocument(results).toJson(QJsonDocument::Compact) << "\n";
    out.flush();
    standardError().flush();
    return failed > 0 ? exitPartial : exitOk;
}

} // namespace lumaro::cli
