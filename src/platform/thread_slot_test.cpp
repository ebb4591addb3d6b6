// SPDX-License-Identifier: MIT
#include "platform/thread_slot.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

namespace {

using platform::ThreadSlot;

std::atomic<int> ended{0};

/// What a thread leaves behind: memory that must still be good when the thread ends.
struct Left {
    std::vector<int> numbers{1, 2, 3};
};

void atEnd(void *value) {
    const std::unique_ptr<Left> left(static_cast<Left *>(value));
    if (left->numbers == std::vector{1, 2, 3})
        ++ended;
}

const ThreadSlot &slot() {
    static const ThreadSlot instance(&atEnd);
    return instance;
}

TEST(ThreadSlotTest, IsEmptyUntilItsThreadFillsIt) {
    EXPECT_EQ(nullptr, slot().get());
    std::thread([] {
        EXPECT_EQ(nullptr, slot().get());
        auto *const left = new Left;
        ASSERT_TRUE(slot().set(left));
        EXPECT_EQ(left, slot().get());
    }).join();
    EXPECT_EQ(nullptr, slot().get());
}

TEST(ThreadSlotTest, WhatIsLeftIsWholeWhenTheThreadEnds) {
    ended = 0;
    std::vector<std::thread> threads;
    for (int number = 0; number < 20; ++number)
        threads.emplace_back([] { ASSERT_TRUE(slot().set(new Left)); });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(20, ended);
}

TEST(ThreadSlotTest, AnEmptiedSlotEndsWithNothing) {
    ended = 0;
    std::thread([] {
        const std::unique_ptr<Left> left(new Left);
        ASSERT_TRUE(slot().set(left.get()));
        ASSERT_TRUE(slot().set(nullptr));
    }).join();
    EXPECT_EQ(0, ended);
}

} // namespace
