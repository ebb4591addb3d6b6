// SPDX-License-Identifier: MIT
#include "platform/fork.h"

#include <pthread.h>

#include <array>
#include <atomic>
#include <cassert>
#include <cstddef>
#include <new>

namespace platform {

namespace {

std::atomic<unsigned> forks{0};

/// More than the process has.
constexpr std::size_t kMostMutexes = 16;

struct Held {
    std::mutex mutex;
    std::array<std::mutex *, kMostMutexes> list{}; ///< guarded by mutex, like `count`
    std::size_t count = 0;
};

/// Never destroyed, since a process may fork while it ends, and made without an allocation, as its users are.
Held &held() noexcept {
    alignas(Held) static unsigned char memory[sizeof(Held)];
    static Held *const instance = new (memory) Held;
    return *instance;
}

void takeAll() {
    held().mutex.lock();
    for (std::size_t index = 0; index < held().count; ++index)
        held().list[index]->lock();
}

void giveBackAll() {
    for (std::size_t index = 0; index < held().count; ++index)
        held().list[index]->unlock();
    held().mutex.unlock();
}

void beginChild() {
    ++forks;
    giveBackAll();
}

[[maybe_unused]] const int watching = pthread_atfork(takeAll, giveBackAll, beginChild);

} // namespace

unsigned forkCount() {
    return forks.load(std::memory_order_relaxed);
}

void holdAcrossForks(std::mutex &mutex) noexcept {
    const std::lock_guard lock(held().mutex);
    assert(held().count < kMostMutexes);
    if (held().count < kMostMutexes)
        held().list[held().count++] = &mutex;
}

} // namespace platform
