// SPDX-License-Identifier: MIT
// Counts allocations. A file of its own, since the compiler must not see both sides of what it replaces.

#include <atomic>
#include <cstdlib>
#include <new>

std::atomic<long> allocations{0};

void *operator new(std::size_t size) {
    ++allocations;
    if (void *const memory = std::malloc(size ? size : 1))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void *memory) noexcept {
    std::free(memory);
}
void operator delete(void *memory, std::size_t) noexcept {
    std::free(memory);
}
