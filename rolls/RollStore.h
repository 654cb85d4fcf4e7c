// SPDX-License-Identifier: GPL-3.0-or-later
// The rolls this installation has published: where each folder went, when, and its share link. Kept in the
// app's data folder, so `roll list` and unpublishing work without asking the remote.
#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

namespace lumaro::rolls {

struct PublishedRoll
{
    QString name;
    QString folder;
    QString target; // REMOTE:path/name
    QDateTime publishedAt;
    int pictures = 0;
    qint64 bytes = 0;
    QString link; // empty when the store gives no public links
};

class RollStore
{
public:
    static QList<PublishedRoll> all();
    // The roll published to `nameOrTarget` (its target, or its name when only one roll has it).
    static std::optional<PublishedRoll> find(const QString& nameOrTarget);
    static bool save(const PublishedRoll& roll,
                     QString* error = nullptr); // replaces the record of its target
    static bool remove(const QString& target, QString* error = nullptr);

private:
    static bool write(const QList<PublishedRoll>& rolls, QString* error);
};

} // namespace lumaro::rolls
