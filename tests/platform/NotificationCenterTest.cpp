// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/NotificationCenter.h"

#include "tests/support/TempFolder.h"

#include <QThread>

#include <gtest/gtest.h>

using namespace lumaro::platform;

TEST(NotificationCenter, PostFromAPoolThreadReachesAnObserverOnItsOwnThread)
{
    NotificationCenter center;
    QObject observer;
    QThread* seenOn = nullptr;
    QVariantMap seenInfo;
    QObject::connect(&center, &NotificationCenter::posted, &observer,
                     [&](const QString& name, const QVariantMap& info) {
                         if (name != notifications::thumbnailNeedsReload)
                             return;
                         seenOn = QThread::currentThread();
                         seenInfo = info;
                     });
    std::unique_ptr<QThread> poster(QThread::create([&center] {
        center.post(notifications::thumbnailNeedsReload, {{QStringLiteral("filePath"), QStringLiteral("/a/b.jpg")}});
    }));
    poster->start();
    poster->wait();
    ASSERT_TRUE(lumaro::testing::waitUntil([&] { return seenOn != nullptr; }));
    EXPECT_EQ(seenOn, observer.thread());
    EXPECT_EQ(seenInfo.value(QStringLiteral("filePath")).toString(), QStringLiteral("/a/b.jpg"));
}
