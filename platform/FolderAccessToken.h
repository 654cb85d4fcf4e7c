// SPDX-License-Identifier: GPL-3.0-or-later
// Folder access tokens: the stored form of a folder the user chose, able to tell when it was moved or replaced.
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace lumaro::platform {

struct ResolvedFolder
{
    QString path;
    // True when the folder at `path` is no longer the one the token was made for (replaced, or moved
    // away and another put in its place), or when the original is gone: the caller should make a new token.
    bool isStale = false;
};

// A token is a small JSON document with the folder's absolute path, device and inode. Linux has no
// sandbox, so "access" is a readability check; start/stop are kept so callers bracket file work the same way.
// All functions are thread-safe.
class FolderAccessToken
{
public:
    // nullopt when `folder` is not an existing directory; `error` receives the reason.
    static std::optional<QByteArray> create(const QString& folder, QString* error = nullptr);
    // nullopt when the bytes are not a token; `error` receives the reason.
    static std::optional<ResolvedFolder> resolve(const QByteArray& token, QString* error = nullptr);
    // True when the folder exists and can be listed.
    static bool startAccess(const QString& folder);
    static void stopAccess(const QString& folder);
};

} // namespace lumaro::platform
