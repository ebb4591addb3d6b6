// SPDX-License-Identifier: MIT
#include "platform/reentrant_lock.h"

#include <mutex>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace platform {
namespace {

/// What another thread finds.
bool otherThreadGets(ReentrantLock &lock) {
    bool got = false;
    std::thread([&] {
        got = lock.try_lock();
        if (got)
            lock.unlock();
    }).join();
    return got;
}

TEST(ReentrantLockTest, OwnerMayTakeItAgain) {
    ReentrantLock lock;
    EXPECT_FALSE(lock.isOwned());
    lock.lock();
    EXPECT_TRUE(lock.try_lock());
    lock.lock();
    lock.unlock();
    lock.unlock();
    EXPECT_TRUE(lock.isOwned());
    EXPECT_FALSE(otherThreadGets(lock)) << "taken three times, given back twice";
    lock.unlock();
    EXPECT_FALSE(lock.isOwned());
    EXPECT_TRUE(otherThreadGets(lock));
}

TEST(ReentrantLockTest, UnlockWithoutOwningDoesNothing) {
    ReentrantLock lock;
    lock.unlock();
    EXPECT_TRUE(otherThreadGets(lock));
    lock.lock();
    lock.unlock();
    lock.unlock();
    EXPECT_TRUE(otherThreadGets(lock));
}

TEST(ReentrantLockTest, UnlockFromAForeignThreadIsIgnored) {
    ReentrantLock lock;
    lock.lock();
    std::thread([&] {
        EXPECT_FALSE(lock.isOwned());
        lock.unlock();
        EXPECT_FALSE(lock.try_lock());
    }).join();
    EXPECT_TRUE(lock.isOwned());
    EXPECT_FALSE(otherThreadGets(lock));
    lock.unlock();
    EXPECT_TRUE(otherThreadGets(lock));
}

TEST(ReentrantLockTest, KeepsThreadsApart) {
    ReentrantLock lock;
    int count = 0; // guarded by lock
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 1000; ++i) {
                const std::lock_guard outer(lock);
                const std::lock_guard inner(lock);
                ++count;
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(count, 4000);
}

} // namespace
} // namespace platform
