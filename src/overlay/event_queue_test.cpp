// SPDX-License-Identifier: MIT
#include "overlay/event_queue.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using States = std::vector<ECallBack_State>;

TEST(EventQueue, CollectsInOrderWhileItsScopeLasts) {
    const int object = 0;
    EXPECT_EQ(EventQueue::current(&object), nullptr);
    {
        EventQueue queue(&object);
        EventQueue::current(&object)->push(ECB_POINT_ADD);
        EventQueue::current(&object)->push(ECB_MASK_CREATE);
        EXPECT_EQ(queue.take(), (States{ECB_POINT_ADD, ECB_MASK_CREATE}));
        EXPECT_EQ(queue.take(), States{});
    }
    EXPECT_EQ(EventQueue::current(&object), nullptr);
}

TEST(EventQueue, BelongsToOneObjectAndOneThread) {
    const int object = 0;
    const int other = 0;
    EventQueue queue(&object);
    EXPECT_EQ(EventQueue::current(&other), nullptr);
    EventQueue *elsewhere = &queue;
    std::thread([&] { elsewhere = EventQueue::current(&object); }).join();
    EXPECT_EQ(elsewhere, nullptr);
}

TEST(EventQueue, NestedQueuesOfOtherObjectsDoNotHideIt) {
    const int object = 0;
    const int other = 0;
    EventQueue queue(&object);
    EventQueue inner(&other);
    EXPECT_EQ(EventQueue::current(&object), &queue);
    EXPECT_EQ(EventQueue::current(&other), &inner);
}

} // namespace
