// SPDX-License-Identifier: MIT
#include "overlay/event_queue.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

using Events = std::vector<ECallBack_State>;

TEST(EventQueue, CollectsInOrderWhileItsScopeLasts) {
    EventQueue *current = nullptr;
    Events events;
    {
        const EventQueue queue(current, events);
        ASSERT_EQ(current, &queue);
        current->push(ECB_POINT_ADD);
        current->push(ECB_MASK_CREATE);
    }
    EXPECT_EQ(current, nullptr);
    EXPECT_EQ(events, (Events{ECB_POINT_ADD, ECB_MASK_CREATE}));
}

TEST(EventQueue, BelongsToOneThread) {
    EventQueue *current = nullptr;
    Events events;
    const EventQueue queue(current, events);
    EXPECT_TRUE(queue.isOfThisThread());
    bool elsewhere = true;
    std::thread([&] { elsewhere = queue.isOfThisThread(); }).join();
    EXPECT_FALSE(elsewhere);
}

TEST(EventQueue, InnermostCollects) {
    EventQueue *current = nullptr;
    Events outerEvents;
    Events innerEvents;
    const EventQueue outer(current, outerEvents);
    {
        const EventQueue inner(current, innerEvents);
        current->push(ECB_POINT_ADD);
    }
    current->push(ECB_MASK_CREATE);
    EXPECT_EQ(innerEvents, Events{ECB_POINT_ADD});
    EXPECT_EQ(outerEvents, Events{ECB_MASK_CREATE});
}

} // namespace
