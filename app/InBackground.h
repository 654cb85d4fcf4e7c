// SPDX-License-Identifier: GPL-3.0-or-later
// Runs a value-in, value-out job on the pool and hands its result to the main thread.
#pragma once

#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QThreadPool>

namespace lumaro::app {

// `work` runs on the global pool and must touch nothing of `context`; `done(result)` runs on `context`'s
// thread, unless `context` is gone by then. Callers drop a result that is no longer wanted inside `done`.
template <typename Work, typename Done> void inBackground(QObject* context, Work work, Done done)
{
    QPointer<QObject> guard(context);
    QThreadPool::globalInstance()->start([guard, work, done] {
        auto result = work();
        QMetaObject::invokeMethod(
            guard.data(),
            [guard, done, result] {
                if (guard)
                    done(result);
            },
            Qt::QueuedConnection);
    });
}

} // namespace lumaro::app
