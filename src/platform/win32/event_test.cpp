// SPDX-License-Identifier: MIT
// Events that the system refuses to make.

#include "platform/event.h"

#include <thread>

#include <gtest/gtest.h>

#include "platform/win32/handles.h"

namespace platform {
namespace {

constexpr char kName[] = "orvanel_event_test_taken";

/// Has the name as something else, so that no kernel event can be made under it.
class RefusedEvent : public testing::Test {
  protected:
    RefusedEvent() : mutex(CreateMutexA(nullptr, FALSE, kName)) {
        const KernelHandle refused(CreateEventA(nullptr, TRUE, FALSE, kName));
        EXPECT_FALSE(refused) << "the system made it all the same";
    }

    const KernelHandle mutex;
};

TEST_F(RefusedEvent, IsOneWithinTheProcess) {
    Event first(kName, Event::Reset::Manual, false);
    Event second(kName, Event::Reset::Manual, true);
    EXPECT_FALSE(first.isSignalled()) << "the first one's state counts";
    EXPECT_FALSE(second.wait(5));
    second.set();
    EXPECT_TRUE(first.wait(kInfinite));
    first.reset();
    EXPECT_FALSE(second.isSignalled());
}

TEST_F(RefusedEvent, WakesAThreadThatWaits) {
    Event event(kName, Event::Reset::Automatic, false);
    std::thread thread([&event] { event.set(); });
    EXPECT_TRUE(event.wait(kInfinite));
    thread.join();
    EXPECT_FALSE(event.isSignalled());
}

} // namespace
} // namespace platform
