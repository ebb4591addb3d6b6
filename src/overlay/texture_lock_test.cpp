// SPDX-License-Identifier: MIT
#include "overlay/texture_lock.h"

#include <future>
#include <thread>

#include <gtest/gtest.h>

namespace {

/// What another thread finds.
bool isFree(TextureLock &lock) {
    return std::async(std::launch::async,
                      [&] {
                          if (!lock.tryLockFor(1))
                              return false;
                          lock.unlock();
                          return true;
                      })
        .get();
}

TEST(TextureLock, TheHostGivesBackOnlyWhatItTook) {
    TextureLock lock;
    EXPECT_FALSE(lock.unlockForHost());
    {
        const TextureLockGuard guard(lock);
        EXPECT_FALSE(lock.unlockForHost());
        lock.lockForHost();
        EXPECT_TRUE(lock.unlockForHost());
        EXPECT_FALSE(lock.unlockForHost());
        EXPECT_FALSE(isFree(lock));
    }
    EXPECT_TRUE(isFree(lock));
}

TEST(TextureLock, AHoldOfTheHostOutlastsAnOperation) {
    TextureLock lock;
    lock.lockForHost();
    { const TextureLockGuard guard(lock); }
    EXPECT_FALSE(isFree(lock));
    EXPECT_TRUE(lock.unlockForHost());
    EXPECT_TRUE(isFree(lock));
}

TEST(TextureLock, AnotherThreadsHoldIsNotGivenBack) {
    TextureLock lock;
    lock.lockForHost();
    std::thread([&] { EXPECT_FALSE(lock.unlockForHost()); }).join();
    EXPECT_FALSE(isFree(lock));
    EXPECT_TRUE(lock.unlockForHost());
}

TEST(TextureLock, HoldsOfTheHostEndWithTheirThread) {
    TextureLock lock;
    std::thread([&] {
        lock.lockForHost();
        lock.lockForHost();
    }).join();
    EXPECT_TRUE(isFree(lock));
    EXPECT_EQ(lock.abandonedHolds()->take(), 2);
    EXPECT_EQ(lock.abandonedHolds()->take(), 0);
    std::thread([&] {
        lock.lockForHost();
        lock.unlockForHost();
    }).join();
    EXPECT_EQ(lock.abandonedHolds()->take(), 0);
}

TEST(TextureLock, GivesUpAllAndTakesItBack) {
    TextureLock lock;
    EXPECT_EQ(lock.releaseAll().all, 0);
    lock.lockForHost();
    lock.lock();
    const TextureLock::Holds holds = lock.releaseAll();
    EXPECT_EQ(holds.all, 2);
    EXPECT_EQ(holds.hosts, 1);
    EXPECT_TRUE(isFree(lock));
    lock.takeBack(holds);
    EXPECT_FALSE(isFree(lock));
    EXPECT_TRUE(lock.unlockForHost());
    EXPECT_FALSE(lock.unlockForHost());
    lock.unlock();
    EXPECT_TRUE(isFree(lock));
}

TEST(TextureLock, AnObjectMayGoWhileItsOwnThreadHoldsIt) {
    std::thread([] {
        TextureLock lock;
        lock.lockForHost();
    }).join();
}

} // namespace
