// SPDX-License-Identifier: GPL-3.0-or-later
// A small tmpfs mounted for one test: a second volume, so that trashes per volume and copies across file
// systems run for real.
#pragma once

#include <QString>
#include <QTemporaryDir>

namespace lumaro::testing {

// Mounts on construction, unmounts on destruction. Mounting needs root (or a user namespace): isMounted()
// tells, and whyNot() says what failed, for the test's skip message.
class TmpfsMount
{
public:
    TmpfsMount();
    ~TmpfsMount();
    TmpfsMount(const TmpfsMount&) = delete;
    TmpfsMount& operator=(const TmpfsMount&) = delete;

    bool isMounted() const { return m_mounted; }
    const QString& whyNot() const { return m_whyNot; }
    QString path() const { return m_dir.path(); }
    QString filePath(const QString& relative) const { return m_dir.filePath(relative); }

private:
    QTemporaryDir m_dir;
    bool m_mounted = false;
    QString m_whyNot;
};

} // namespace lumaro::testing
