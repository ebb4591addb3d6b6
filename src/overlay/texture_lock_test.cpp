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

TEST(HostHoldsGivenUp, FreesEveryLockOfTheThreadAndTakesThemBack) {
    TextureLock first;
    TextureLock second;
    first.lockForHost();
    second.lockForHost();
    first.lockForHost();
    {
        const HostHoldsGivenUp givenUp;
        EXPECT_TRUE(isFree(first));
        EXPECT_TRUE(isFree(second));
        std::thread([&] {
            second.lockForHost();
            EXPECT_TRUE(second.unlockForHost());
        }).join();
    }
    EXPECT_FALSE(isFree(first));
    EXPECT_FALSE(isFree(second));
    EXPECT_TRUE(first.unlockForHost());
    EXPECT_FALSE(isFree(first));
    EXPECT_TRUE(first.unlockForHost());
    EXPECT_FALSE(first.unlockForHost());
    EXPECT_TRUE(isFree(first));
    EXPECT_TRUE(second.unlockForHost());
    EXPECT_TRUE(isFree(second));
}

TEST(HostHoldsGivenUp, WhatIsTakenBackEndsWithItsThread) {
    TextureLock lock;
    std::thread([&] {
        lock.lockForHost();
        const HostHoldsGivenUp givenUp;
    }).join();
    EXPECT_TRUE(isFree(lock));
    EXPECT_EQ(lock.abandonedHolds()->take(), 1);
}

TEST(HostHoldsGivenUp, DoesNothingOnAThreadWithoutHolds) {
    TextureLock lock;
    lock.lockForHost();
    std::thread([&] {
        const HostHoldsGivenUp givenUp;
        EXPECT_FALSE(isFree(lock));
    }).join();
    EXPECT_FALSE(isFree(lock));
    EXPECT_TRUE(lock.unlockForHost());
}

TEST(TextureLock, AnObjectMayGoWhileItsOwnThreadHoldsIt) {
    std::thread([] {
        TextureLock lock;
        lock.lockForHost();
    }).join();
}

} // namespace
