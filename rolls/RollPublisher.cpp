// SPDX-License-Identifier: GPL-3.0-or-later
#include "rolls/RollPublisher.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

namespace lumaro::rolls {

namespace {

const QString kPage = QStringLiteral("index.html");
// rclone's exit code for "directory not found": a roll not published yet.
constexpr int kRcloneDirectoryNotFound = 3;

QString megabytes(qint64 bytes)
{
    return QString::number(double(bytes) / 1e6, 'f', 1) + QStringLiteral(" MB");
}

PublishOutcome finished(PublishStatus status, QString message)
{
    PublishOutcome outcome;
    outcome.status = status;
    outcome.message = std::move(message);
    return outcome;
}

} // namespace

RollPublisher::RollPublisher(platform::Rclone rclone) : m_rclone(std::move(rclone)) {}

std::optional<QString> RollPublisher::targetOf(const QString& destination, const QString& name,
                                               QString* problem)
{
    static const QRegularExpression remote(QStringLiteral(R"(^[\w.\- ]+:)"));
    if (!remote.match(destination).hasMatch()) {
        *problem = QStringLiteral("%1: not a remote; give REMOTE:PATH (a remote of `rclone config`)")
                       .arg(destination);
        return std::nullopt;
    }
    if (name.isEmpty() || name == QLatin1String(".") || name == QLatin1String("..") ||
        name.contains(QLatin1Char('/')) || name.contains(QLatin1Char('\n'))) {
        *problem = QStringLiteral("%1: not a usable roll name").arg(name);
        return std::nullopt;
    }
    QString target = destination;
    if (!target.endsWith(QLatin1Char(':')) && !target.endsWith(QLatin1Char('/')))
        target += QLatin1Char('/');
    return target + name;
}

PublishOutcome RollPublisher::publish(const RollRequest& request,
                                      const std::function<void(const RollProgress&)>& progress,
                                      const std::atomic_bool* cancel) const
{
    const auto report = [&](RollProgress::Step step, qint64 done, qint64 total) {
        if (progress)
            progress({step, done, total});
    };
    if (!QFileInfo(request.folder).isDir())
        return finished(PublishStatus::refused, QStringLiteral("%1: not a folder").arg(request.folder));
    if (!platform::Rclone::isInstalled())
        return finished(PublishStatus::refused, platform::RcloneResult().reason());
    const QString name =
        request.name.isEmpty() ? QDir(QFileInfo(request.folder).absoluteFilePath()).dirName() : request.name;
    QString problem;
    const auto target = targetOf(request.destination, name, &problem);
    if (!target)
        return finished(PublishStatus::refused, problem);

    StageOptions options = request.options;
    options.title = name;
    const RollStage stage(QFileInfo(request.folder).absoluteFilePath(), *target, options);
    const StageResult staged = stage.update(
        [&](qsizetype done, qsizetype total) { report(RollProgress::Step::preparing, done, total); }, cancel);
    if (staged.cancelled)
        return finished(PublishStatus::cancelled, QStringLiteral("cancelled; nothing was sent"));
    if (staged.pictures.isEmpty()) {
        PublishOutcome outcome =
            finished(PublishStatus::refused, QStringLiteral("%1: no picture to publish").arg(request.folder));
        outcome.failures = staged.failures;
        return outcome;
    }
    if (request.budgetBytes && staged.bytes() > *request.budgetBytes)
        return finished(PublishStatus::refused,
                        QStringLiteral("the roll is %1, over its budget of %2; nothing was sent")
                            .arg(megabytes(staged.bytes()), megabytes(*request.budgetBytes)));

    // What the store already has of this roll: only the rest is sent, and it is what must fit. The first
    // contact with the store: few low-level retries, so a refused sign-in is said in a second, not after
    // rclone's default ten backed-off attempts (12 s over sftp).
    const platform::RcloneResult listing =
        m_rclone.run({QStringLiteral("lsjson"), QStringLiteral("-R"), QStringLiteral("--files-only"),
                      QStringLiteral("--no-mimetype"), QStringLiteral("--no-modtime"),
                      QStringLiteral("--low-level-retries"), QStringLiteral("3"), *target});
    if (!listing.ok() && listing.exitCode != kRcloneDirectoryNotFound)
        return finished(PublishStatus::failed, QStringLiteral("%1: %2").arg(*target, listing.reason()));
    const QHash<QString, qint64> online = platform::Rclone::fileSizesIn(listing.output);
    const QHash<QString, qint64>& local = staged.files;
    qint64 toSend = 0;
    for (auto it = local.cbegin(); it != local.cend(); ++it)
        if (online.value(it.key(), -1) != it.value())
            toSend += it.value();
    if (const auto free = m_rclone.freeBytes(*target); free && toSend > *free)
        return finished(PublishStatus::refused,
                        QStringLiteral("%1 to send, but the store has only %2 free; nothing was sent")
                            .arg(megabytes(toSend), megabytes(*free)));

    const QStringList exceptPage{QStringLiteral("--exclude"), QLatin1Char('/') + kPage};
    const platform::RcloneResult sent = m_rclone.run(
        QStringList{QStringLiteral("copy"), staged.uploadFolder, *target} + exceptPage,
        [&](const platform::RcloneProgress& p) { report(RollProgress::Step::sending, p.bytes, toSend); },
        cancel);
    if (!sent.ok())
        return finished(sent.cancelled ? PublishStatus::cancelled : PublishStatus::failed,
                        QStringLiteral("sending to %1 failed: %2; the album online is unchanged")
                            .arg(*target, sent.reason()));
    report(RollProgress::Step::finishing, toSend, toSend);
    // Always sent: a page for other pictures can have the old one's size, and size is all some stores
    // compare.
    const platform::RcloneResult page =
        m_rclone.run({QStringLiteral("copyto"), QStringLiteral("--ignore-times"),
                      staged.uploadFolder + QLatin1Char('/') + kPage, *target + QLatin1Char('/') + kPage});
    if (!page.ok())
        return finished(
            PublishStatus::failed,
            QStringLiteral("the album page could not be sent to %1: %2").arg(*target, page.reason()));
    // Only now, with the new page online, go the pictures the folder no longer has.
    const platform::RcloneResult pruned =
        m_rclone.run(QStringList{QStringLiteral("sync"), staged.uploadFolder, *target} + exceptPage);

    PublishOutcome outcome;
    outcome.failures = staged.failures;
    outcome.sentBytes = sent.last.bytes + page.last.bytes;
    outcome.roll = {name,
                    QFileInfo(request.folder).absoluteFilePath(),
                    *target,
                    QDateTime::currentDateTimeUtc(),
                    int(staged.pictures.size()),
                    staged.bytes(),
                    {}};
    const platform::RcloneResult link = m_rclone.run({QStringLiteral("link"), *target});
    if (link.ok())
        outcome.roll.link = QString::fromUtf8(link.output).trimmed();
    QString error;
    if (!RollStore::save(outcome.roll, &error))
        outcome.failures.append(QStringLiteral("the record of published rolls: ") + error);
    if (!pruned.ok())
        outcome.failures.append(QStringLiteral("removing what the folder no longer has: ") + pruned.reason());
    outcome.status = outcome.failures.isEmpty() ? PublishStatus::published : PublishStatus::partly;
    outcome.message = QStringLiteral("%1 pictures published to %2").arg(staged.pictures.size()).arg(*target);
    return outcome;
}

bool RollPublisher::unpublish(const PublishedRoll& roll, QString* error) const
{
    const platform::RcloneResult purged = m_rclone.run({QStringLiteral("purge"), roll.target});
    if (!purged.ok() && purged.exitCode != kRcloneDirectoryNotFound) {
        *error = purged.reason();
        return false;
    }
    QDir(RollStage(roll.folder, roll.target, {}).stageFolder()).removeRecursively();
    return RollStore::remove(roll.target, error);
}

} // namespace lumaro::rolls
