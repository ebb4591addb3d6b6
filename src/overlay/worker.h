// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>
#include <thread>
#include <utility>

#include "platform/event.h"
#include "platform/fork.h"

class Orvanel;

/// What the object and its worker thread share. The worker reports to the host that keyframe drawing loaded new points.
struct WorkerBlock {
    platform::Event stop{platform::Event::Reset::Manual, false};
    platform::Event done{platform::Event::Reset::Manual, false};
    platform::Event trigger{platform::Event::Reset::Automatic, false};
    Orvanel *owner = nullptr;
    const unsigned startedIn = platform::forkCount(); ///< a forked process has no such thread

    /// The thread for the one caller that joins or detaches it; everybody after that gets an empty one.
    std::thread takeThread() {
        const std::lock_guard lock(threadMutex);
        return std::exchange(thread, std::thread());
    }

    std::mutex threadMutex;
    std::thread thread; ///< guarded by threadMutex
};
