#include "platform/linux/queue/BackgroundLane.h"

#include <QDeadlineTimer>
#include <QDir>
#include <QThread>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <memory>
#include <semaphore>
#include <set>
#include <vector>

using namespace amberquill;
using namespace std::chrono_literals;

namespace {

constexpr auto longEnough = 30s;

// Work that blocks until the test releases it.
struct Held {
    std::counting_semaphore<> begun{0};
    std::counting_semaphore<> end{0};

    [[nodiscard]] BackgroundLane::Work work() {
        return [this] {
            begun.release();
            end.acquire();
        };
    }
};

auto threadsOfThisProcess() {
    return QDir(QStringLiteral("/proc/self/task")).count();
}

} // namespace

TEST(BackgroundLane, RunsAtMostItsWidthOfPiecesAtATime) {
    BackgroundLane lane({.width = 2, .most = 2});
    std::atomic<int> running = 0;
    std::atomic<int> most = 0;
    for (int piece = 0; piece < 200; ++piece) {
        lane.start([&] {
            const int now = ++running;
            for (int seen = most; now > seen && !most.compare_exchange_weak(seen, now);) {
            }
            --running;
        });
    }
    EXPECT_TRUE(lane.waitUntil(QDeadlineTimer(longEnough)));
    EXPECT_LE(most, 2);
}

TEST(BackgroundLane, ALaneOfWidthOneRunsItsWorkInOrder) {
    BackgroundLane lane({.width = 1, .most = 1});
    std::vector<int> order; // one thread at a time
    for (int piece = 0; piece < 50; ++piece) {
        lane.start([&order, piece] { order.push_back(piece); });
    }
    EXPECT_TRUE(lane.waitUntil(QDeadlineTimer(longEnough)));
    ASSERT_EQ(order.size(), 50U);
    EXPECT_TRUE(std::is_sorted(order.begin(), order.end()));
}

TEST(BackgroundLane, IsCrowdedWhileWorkIsQueued) {
    Held held;
    BackgroundLane lane({.width = 1, .most = 1});
    lane.start(held.work());
    held.begun.acquire();
    EXPECT_FALSE(lane.isCrowded());
    lane.start([] {});
    EXPECT_TRUE(lane.isCrowded());
    held.end.release();
    EXPECT_TRUE(lane.waitUntil(QDeadlineTimer(longEnough)));
    EXPECT_FALSE(lane.isCrowded());
}

TEST(BackgroundLane, WideningStartsQueuedWork) {
    Held first;
    Held second;
    BackgroundLane lane({.width = 1, .most = 2});
    lane.start(first.work());
    first.begun.acquire();
    lane.start(second.work());
    lane.setWidth(2);
    EXPECT_TRUE(second.begun.try_acquire_for(longEnough));
    first.end.release();
    second.end.release();
}

TEST(BackgroundLane, DroppedWorkIsDestroyedAndNeverRuns) {
    Held held;
    BackgroundLane lane({.width = 1, .most = 1});
    lane.start(held.work());
    held.begun.acquire();
    auto owned = std::make_shared<int>(0);
    lane.start([owned] { ++*owned; });
    EXPECT_EQ(owned.use_count(), 2);
    lane.dropWaiting();
    EXPECT_EQ(owned.use_count(), 1);
    held.end.release();
    EXPECT_TRUE(lane.waitUntil(QDeadlineTimer(longEnough)));
    EXPECT_EQ(*owned, 0);
}

TEST(BackgroundLane, FinishedWorkIsDestroyed) {
    BackgroundLane lane({.width = 1, .most = 1});
    auto owned = std::make_shared<int>(0);
    lane.start([owned] { ++*owned; });
    EXPECT_TRUE(lane.waitUntil(QDeadlineTimer(longEnough)));
    EXPECT_EQ(*owned, 1);
    EXPECT_EQ(owned.use_count(), 1);
}

TEST(BackgroundLane, DestructionWaitsForQueuedWork) {
    std::atomic<int> ran = 0;
    {
        BackgroundLane lane({.width = 1, .most = 1});
        for (int piece = 0; piece < 20; ++piece) {
            lane.start([&ran] { ++ran; });
        }
    }
    EXPECT_EQ(ran, 20);
}

TEST(BackgroundLane, AThreadTakesTheNextPieceItself) {
    Held held;
    BackgroundLane lane({.width = 1, .most = 1});
    lane.start(held.work());
    held.begun.acquire();
    const auto before = threadsOfThisProcess();
    for (int piece = 0; piece < 10; ++piece) {
        lane.start([] {});
    }
    held.end.release();
    ASSERT_TRUE(lane.waitUntil(QDeadlineTimer(longEnough)));
    EXPECT_EQ(threadsOfThisProcess(), before);
}

TEST(BackgroundLane, ItHasNoMoreThreadsThanPiecesThatRunAtATime) {
    constexpr int width = 8;
    Held held;
    BackgroundLane lane({.width = width, .most = width});
    const auto before = threadsOfThisProcess();
    for (int piece = 0; piece < width; ++piece) {
        lane.start(held.work());
    }
    for (int piece = 0; piece < width; ++piece) {
        held.begun.acquire();
    }
    EXPECT_LE(threadsOfThisProcess(), before + width);
    held.end.release(width);
    ASSERT_TRUE(lane.waitUntil(QDeadlineTimer(longEnough)));
}

TEST(BackgroundLane, AnIdleThreadIsUsedAgain) {
    BackgroundLane lane({.width = 1, .most = 1});
    std::set<Qt::HANDLE> threads;
    for (int piece = 0; piece < 10; ++piece) {
        lane.start([&threads] { threads.insert(QThread::currentThreadId()); });
        ASSERT_TRUE(lane.waitUntil(QDeadlineTimer(longEnough)));
    }
    EXPECT_EQ(threads.size(), 1U);
}
