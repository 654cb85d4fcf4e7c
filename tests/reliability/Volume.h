// SPDX-License-Identifier: GPL-3.0-or-later
// Small file systems a test mounts for itself (tmpfs), in a mount namespace of the test process's own, so
// nothing is left mounted on the machine when the process ends.
#pragma once

#include <QString>

namespace lumaro::testing {

class Volume
{
public:
    // Whether this process may mount (root with CAP_SYS_ADMIN, a private mount namespace granted); the reason
    // when not.
    static bool canMount(QString* reason);

    // A tmpfs of `bytes` at `path` (created); check isMounted().
    Volume(const QString& path, qint64 bytes);
    ~Volume();
    Volume(const Volume&) = delete;
    Volume& operator=(const Volume&) = delete;

    bool isMounted() const { return m_mounted; }
    QString path() const { return m_path; }
    bool makeReadOnly();

private:
    QString m_path;
    bool m_mounted = false;
};

} // namespace lumaro::testing
