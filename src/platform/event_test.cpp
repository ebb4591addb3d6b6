// SPDX-License-Identifier: MIT
#include "platform/event.h"

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace platform {
namespace {

using Reset = Event::Reset;

TEST(EventTest, StartsAsAsked) {
    EXPECT_FALSE(Event(Reset::Manual, false).isSignalled());
    EXPECT_TRUE(Event(Reset::Manual, true).isSignalled());
    EXPECT_FALSE(Event(Reset::Automatic, false).isSignalled());
    EXPECT_TRUE(Event(Reset::Automatic, true).isSignalled());
}

TEST(EventTest, ManualEventStaysSignalledUntilReset) {
    Event event(Reset::Manual, false);
    event.set();
    event.set();
    EXPECT_TRUE(event.wait(kInfinite));
    EXPECT_TRUE(event.wait(0));
    event.reset();
    event.reset();
    EXPECT_FALSE(event.wait(0));
}

TEST(EventTest, AutomaticEventLetsOneWaitPass) {
    Event event(Reset::Automatic, false);
    event.set();
    event.set(); // not counted
    EXPECT_TRUE(event.wait(kInfinite));
    EXPECT_FALSE(event.wait(0));
}

TEST(EventTest, WaitTimesOutAndLeavesTheEventUsable) {
    Event event(Reset::Automatic, false);
    EXPECT_FALSE(event.wait(5));
    event.set();
    EXPECT_TRUE(event.wait(5));
}

TEST(EventTest, WakesAThreadThatWaits) {
    Event request(Reset::Automatic, false);
    Event answer(Reset::Automatic, false);
    std::atomic<bool> stop{false};
    std::thread thread([&] {
        while (request.wait(kInfinite) && !stop)
            answer.set();
    });
    for (int i = 0; i < 100; ++i) {
        request.set();
        EXPECT_TRUE(answer.wait(10000));
    }
    stop = true;
    request.set();
    thread.join();
}

TEST(EventTest, ManualEventWakesEveryWaiter) {
    Event event(Reset::Manual, false);
    std::atomic<int> woken{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] { woken += event.wait(kInfinite) ? 1 : 0; });
    event.set();
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(woken, 4);
}

TEST(EventTest, AutomaticEventWakesOneWaiterForEverySignal) {
    Event event(Reset::Automatic, false);
    Event woke(Reset::Automatic, false);
    std::atomic<int> woken{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            event.wait(kInfinite);
            ++woken;
            woke.set();
        });
    for (int i = 1; i <= 4; ++i) {
        event.set();
        EXPECT_TRUE(woke.wait(10000));
        EXPECT_EQ(woken, i);
    }
    for (std::thread &thread : threads)
        thread.join();
}

TEST(EventTest, NamedEventsOfOneNameAreOneEvent) {
    constexpr char kName[] = "orvanel_event_test_shared";
    Event first(kName, Reset::Manual, true);
    Event second(kName, Reset::Automatic, false); // kind and state were decided by the first
    EXPECT_TRUE(second.isSignalled());
    EXPECT_TRUE(second.isSignalled());
    second.reset();
    EXPECT_FALSE(first.isSignalled());
    EXPECT_TRUE(Event("orvanel_event_test_other", Reset::Manual, true).isSignalled());
}

TEST(EventTest, ANameIsFreeWhenItsLastHolderIsGone) {
    constexpr char kName[] = "orvanel_event_test_gone";
    { Event first(kName, Reset::Manual, true); }
    EXPECT_FALSE(Event(kName, Reset::Manual, false).isSignalled());
}

TEST(EventTest, TheWaiterMayEndTheEventsLife) {
    for (int i = 0; i < 200; ++i) {
        auto event = std::make_unique<Event>(Reset::Manual, false);
        std::thread thread([&signalled = *event] { signalled.set(); });
        EXPECT_TRUE(event->wait(kInfinite));
        // The other thread may not have returned from set() yet; the sanitizers watch what it still touches.
        event.reset();
        thread.join();
    }
}

} // namespace
} // namespace platform
