// SPDX-License-Identifier: GPL-3.0-or-later
#include "browse/thumbnails/ThumbnailReloadService.h"

#include "platform/NotificationCenter.h"

#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <barrier>

using namespace lumaro::browse;
using lumaro::platform::NotificationCenter;

namespace {

struct Request
{
    double at;
    const char* path;
    bool posts;
};

} // namespace

class ReloadCooldown : public ::testing::TestWithParam<std::vector<Request>>
{
};

TEST_P(ReloadCooldown, PostsAtMostOncePerPathPerCooldown)
{
    double now = 0;
    NotificationCenter center;
    QStringList posted;
    QObject::connect(&center, &NotificationCenter::posted, [&](const QString& name, const QVariantMap& info) {
        EXPECT_EQ(name, QStringLiteral("ThumbnailNeedsReload"));
        posted << info.value(QStringLiteral("filePath")).toString();
    });
    ThumbnailReloadService service([&now] { return now; }, &center);
    QStringList expected;
    for (const Request& request : GetParam()) {
        now = 1024.0 + request.at; // a binary base keeps the sums exact
        const QString path = QString::fromUtf8(request.path);
        EXPECT_EQ(service.requestReload(path), request.posts) << "at " << request.at << " " << request.path;
        if (request.posts)
            expected << path;
    }
    EXPECT_EQ(posted, expected);
}

INSTANTIATE_TEST_SUITE_P(
    Timelines, ReloadCooldown,
    ::testing::Values(
        std::vector<Request>{{0.0, "/a/b.jpg", true}},                            // the first always posts
        std::vector<Request>{{0.0, "/a/b.jpg", true}, {0.1, "/a/b.jpg", false}},  // inside the cooldown
        std::vector<Request>{{0.0, "/a/b.jpg", true}, {0.1, "/a/c.jpg", true}},   // another path
        std::vector<Request>{{0.0, "/a/b.jpg", true}, {0.25, "/a/b.jpg", true}},  // after it
        std::vector<Request>{{0.0, "/a/b.jpg", true}, {0.1, "/a/./b.jpg", true}}, // plain-string keys
        // a steady stream posts every other time: suppressed requests are not recorded
        std::vector<Request>{{0.0, "/x", true},
                             {0.125, "/x", false},
                             {0.25, "/x", true},
                             {0.375, "/x", false},
                             {0.5, "/x", true}}));

TEST(ThumbnailReloadService, ARequestExactlyOneCooldownLaterPosts)
{
    // Exact binary steps, so the test checks ">=" and not floating-point luck.
    double now = 1024.0;
    NotificationCenter center;
    ThumbnailReloadService service([&now] { return now; }, &center);
    EXPECT_TRUE(service.requestReload(QStringLiteral("/a")));
    now += ThumbnailReloadService::cooldownSeconds;
    EXPECT_TRUE(service.requestReload(QStringLiteral("/a")));
}

TEST(ThumbnailReloadService, TwoThreadsAskingAtTheSameMomentPostOnce)
{
    for (int round = 0; round < 200; ++round) {
        NotificationCenter center;
        std::atomic<int> posts = 0;
        QObject::connect(&center, &NotificationCenter::posted,
                         [&posts] { ++posts; }); // direct: caller's thread
        ThumbnailReloadService service([] { return 5000.0; }, &center);
        std::barrier start(2);
        const auto ask = [&] {
            start.arrive_and_wait();
            service.requestReload(QStringLiteral("/same.jpg"));
        };
        std::unique_ptr<QThread> a(QThread::create(ask));
        std::unique_ptr<QThread> b(QThread::create(ask));
        a->start();
        b->start();
        a->wait();
        b->wait();
        ASSERT_EQ(posts.load(), 1) << "round " << round;
    }
}
