// SPDX-License-Identifier: MIT
// In a file of its own: where the compiler can see into these operators it takes pairs of new and free for mistakes.

#include "platform/testing/failing_new.h"

#include <cstdlib>
#include <new>

namespace {

constexpr int kNever = -1;
/// How many more requests succeed before one fails.
thread_local int granted = kNever;
thread_local bool failed = false;

void *allocate(std::size_t size) noexcept {
    if (granted != kNever && granted-- == 0) {
        failed = true;
        return nullptr;
    }
    return std::malloc(size == 0 ? 1 : size);
}

void *allocateOrThrow(std::size_t size) {
    if (void *const memory = allocate(size))
        return memory;
    throw std::bad_alloc();
}

} // namespace

namespace platform {

FailingNew::FailingNew(int grantedFirst) {
    granted = grantedFirst;
    failed = false;
}
FailingNew::~FailingNew() {
    granted = kNever;
}
bool FailingNew::hasFailed() const {
    return failed;
}

} // namespace platform

void *operator new(std::size_t size) {
    return allocateOrThrow(size);
}
void *operator new[](std::size_t size) {
    return allocateOrThrow(size);
}
void *operator new(std::size_t size, const std::nothrow_t &) noexcept {
    return allocate(size);
}
void *operator new[](std::size_t size, const std::nothrow_t &) noexcept {
    return allocate(size);
}
void operator delete(void *memory) noexcept {
    std::free(memory);
}
void operator delete[](void *memory) noexcept {
    std::free(memory);
}
void operator delete(void *memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void *memory, std::size_t) noexcept {
    std::free(memory);
}
