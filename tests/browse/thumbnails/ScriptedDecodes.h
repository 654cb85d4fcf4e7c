// SPDX-License-Identifier: GPL-3.0-or-later
// A decode the loaders' tests script: it records what it was asked for, can hold one path until the test lets
// it go, and fails the paths it is told to (a file still being copied in). Each test wraps decode() in its
// loader's decode signature.
#pragma once

#include <QImage>
#include <QSemaphore>
#include <QStringList>

#include <mutex>

namespace lumaro::browse {

class ScriptedDecodes
{
public:
    QString heldPath;   // set before the loader starts
    QSemaphore started; // released when the held path's decode begins
    QSemaphore release; // released by the test to let it finish

    // From a decode thread: records `label`, waits while `path` is the held one; null for a failing path.
    QImage decode(const QString& path, const QString& label)
    {
        bool fails = false;
        {
            std::lock_guard lock(m_mutex);
            m_order.append(label);
            fails = m_failing.contains(path);
        }
        if (path == heldPath) {
            started.release();
            release.acquire();
        }
        if (fails)
            return QImage();
        QImage image(8, 8, QImage::Format_RGB32);
        image.fill(Qt::green);
        return image;
    }
    void setFailing(const QStringList& paths)
    {
        std::lock_guard lock(m_mutex);
        m_failing = paths;
    }
    QStringList decoded()
    {
        std::lock_guard lock(m_mutex);
        return m_order;
    }

private:
    std::mutex m_mutex;
    QStringList m_order;
    QStringList m_failing;
};

} // namespace lumaro::browse
