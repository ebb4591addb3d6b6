// SPDX-License-Identifier: MIT
// The program's own allocator, so that every allocation of the library is seen. In a file of its own: where the
// compiler can see into these operators it takes the pairs of new and free for mistakes.

#include "mask/counting_allocator_test.h"

#include <cstdlib>
#include <new>

namespace {

void *counted(std::size_t size) {
    ++allocations;
    allocatedBytes += size;
    if (size <= largestGranted) {
        if (void *const memory = std::malloc(size == 0 ? 1 : size))
            return memory;
    }
    throw std::bad_alloc();
}

} // namespace

void *operator new(std::size_t size) {
    return counted(size);
}
void *operator new[](std::size_t size) {
    return counted(size);
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
