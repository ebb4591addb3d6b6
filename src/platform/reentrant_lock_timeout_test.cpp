// SPDX-License-Identifier: MIT
#include "platform/reentrant_lock.h"

#include <chrono>
#include <future>

#include <gtest/gtest.h>

namespace {

using std::chrono::milliseconds;

bool tryOnAnotherThread(platform::ReentrantLock &lock, milliseconds patience) {
    return std::async(std::launch::async,
                      [&] {
                          if (!lock.try_lock_for(patience))
                              return false;
                          lock.unlock();
                          return true;
                      })
        .get();
}

TEST(ReentrantLockTimeout, TakesAFreeLockAndGivesUpOnOneThatIsHeld) {
    platform::ReentrantLock lock;
    EXPECT_TRUE(tryOnAnotherThread(lock, milliseconds(1)));
    lock.lock();
    EXPECT_FALSE(tryOnAnotherThread(lock, milliseconds(1)));
    lock.unlock();
    EXPECT_TRUE(tryOnAnotherThread(lock, milliseconds(1)));
}

TEST(ReentrantLockTimeout, CountsForItsOwner) {
    platform::ReentrantLock lock;
    ASSERT_TRUE(lock.try_lock_for(milliseconds(1)));
    ASSERT_TRUE(lock.try_lock_for(milliseconds(1)));
    EXPECT_TRUE(lock.isOwned());
    lock.unlock();
    EXPECT_FALSE(tryOnAnotherThread(lock, milliseconds(1)));
    lock.unlock();
    EXPECT_FALSE(lock.isOwned());
    EXPECT_TRUE(tryOnAnotherThread(lock, milliseconds(1)));
}

TEST(ReentrantLockTimeout, GetsALockThatIsGivenBackInTime) {
    platform::ReentrantLock lock;
    lock.lock();
    auto waiting = std::async(std::launch::async, [&] {
        const bool locked = lock.try_lock_for(std::chrono::minutes(5));
        lock.unlock();
        return locked;
    });
    EXPECT_EQ(std::future_status::timeout, waiting.wait_for(milliseconds(20)));
    lock.unlock();
    EXPECT_TRUE(waiting.get());
}

} // namespace
