// SPDX-License-Identifier: GPL-3.0-or-later
// The list of channels, kept in the settings under "ChannelStore_Channels".
#pragma once

#include "library/Channel.h"

#include <QList>
#include <QObject>

#include <functional>
#include <optional>

namespace lumaro::platform {
class SettingsStore;
}

namespace lumaro::library {

// Every call reads the stored list afresh from the settings store. Names are trimmed and unique (case kept,
// compared exactly); a folder is a channel at most once. An edit that cannot be made returns why, in the
// user's words, and changes nothing. A stored list that cannot be read is shown as empty and never written
// over (the user's channels may still be recovered from it). Main thread for the signal; the reads and edits
// themselves are safe wherever the settings store is.
class ChannelStore : public QObject
{
    Q_OBJECT
public:
    static const QString settingsKey; // "ChannelStore_Channels"

    // Over the user's own settings.
    static ChannelStore& shared();
    explicit ChannelStore(platform::SettingsStore& settings, QObject* parent = nullptr);

    QList<Channel> channels() const;
    // The index of the channel named `nameOrPath`, else of the one whose folder it is; -1 when none.
    int indexOf(const QString& nameOrPath) const;

    // Adds `folder` at the end under `name` (its folder name when empty). nullopt on success, else the
    // reason.
    std::optional<QString> add(const QString& folder, const QString& name = {});
    std::optional<QString> rename(int index, const QString& name);
    // Moves the channel at `from` so that it ends up at `to` (both indices of the list before the move).
    std::optional<QString> move(int from, int to);
    std::optional<QString> remove(int index);

Q_SIGNALS:
    void channelsChanged();

private:
    // nullopt when the stored value exists but is not a list of channels.
    std::optional<QList<Channel>> load() const;
    // Loads, applies `edit` (which returns a refusal or nullopt), saves and announces.
    std::optional<QString> change(const std::function<std::optional<QString>(QList<Channel>&)>& edit);

    platform::SettingsStore& m_settings;
};

} // namespace lumaro::library
