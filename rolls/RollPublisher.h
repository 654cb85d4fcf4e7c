// SPDX-License-Identifier: GPL-3.0-or-later
// Publishes a folder as an online album on the photographer's own storage, through rclone: the roll is staged
// locally, checked against the budget and the store's free space before anything is sent, its pictures sent,
// the album page last (so a broken upload never looks complete), and then whatever the folder no longer has
// is removed, inside the roll's own folder only.
#pragma once

#include "platform/cloud/Rclone.h"
#include "rolls/RollStage.h"
#include "rolls/RollStore.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <optional>

namespace lumaro::rolls {

struct RollRequest
{
    QString folder;
    QString destination; // REMOTE:path — the roll goes to REMOTE:path/<name>
    QString name;        // the roll's name; the folder's name when empty
    std::optional<qint64> budgetBytes;
    StageOptions options;
};

enum class PublishStatus
{
    published, // every picture is online and the page lists them
    partly,    // online, without the pictures that could not be prepared
    refused,   // nothing was sent: bad input, over the budget or the store's free space
    failed,    // the transfer failed; the previous album page (if any) is still the one online
    cancelled,
};

struct RollProgress
{
    enum class Step
    {
        preparing,
        sending,
        finishing
    } step = Step::preparing;
    qint64 done = 0;
    qint64 total = 0; // pictures while preparing, bytes while sending
};

struct PublishOutcome
{
    PublishStatus status = PublishStatus::failed;
    QString message;
    PublishedRoll roll;
    QStringList failures; // "name: reason" per picture left out
    qint64 sentBytes = 0;
};

class RollPublisher
{
public:
    explicit RollPublisher(platform::Rclone rclone = platform::Rclone());

    PublishOutcome publish(const RollRequest& request,
                           const std::function<void(const RollProgress&)>& progress = {},
                           const std::atomic_bool* cancel = nullptr) const;
    // Removes the roll's folder on the remote, and its record and local stage. Ask the user first.
    bool unpublish(const PublishedRoll& roll, QString* error) const;

    // REMOTE:path/name, or nullopt with the reason when the destination or the name cannot be used.
    static std::optional<QString> targetOf(const QString& destination, const QString& name, QString* problem);

private:
    platform::Rclone m_rclone;
};

} // namespace lumaro::rolls
