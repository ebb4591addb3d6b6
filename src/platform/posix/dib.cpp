// SPDX-License-Identifier: MIT
#include "platform/dib.h"

#include <sys/mman.h>

#include <cstdlib>
#include <limits>
#include <new>

struct HBITMAP__ {
    void *memory;
};

namespace platform {

struct DeviceContextHandle {};

namespace {

constexpr std::uint32_t kErrorNotEnoughMemory = 8;
constexpr std::uint32_t kErrorInvalidParameter = 87;
// Drawing code reads and writes whole cache lines.
constexpr std::size_t kAlignment = 64;

thread_local std::uint32_t t_lastError = 0;

// A context holds nothing here, so all of them are one.
DeviceContextHandle g_context;

DeviceContext createCompatibleContext() {
    return &g_context;
}

void deleteContext(DeviceContext) {}

// Nothing is queued here.
void flush() {}

HBITMAP fail(std::uint32_t error) {
    t_lastError = error;
    return nullptr;
}

// An overlay is drawn in short spans, each in another page: on a large surface, finding the pages takes longer than
// drawing. With pages of 2 MB it does not. A system without them says no, and nothing is lost.
void askForLargePages([[maybe_unused]] void *memory, [[maybe_unused]] std::size_t bytes) {
#ifdef MADV_HUGEPAGE
    constexpr std::uintptr_t kLargePage = 2U << 20;
    const std::uintptr_t first = (reinterpret_cast<std::uintptr_t>(memory) + kLargePage - 1) / kLargePage * kLargePage;
    const std::uintptr_t end = (reinterpret_cast<std::uintptr_t>(memory) + bytes) / kLargePage * kLargePage;
    if (first < end)
        static_cast<void>(madvise(reinterpret_cast<void *>(first), end - first, MADV_HUGEPAGE));
#endif
}

HBITMAP createSection(DeviceContext context, const DibHeader &header, void **bits) {
    if (bits)
        *bits = nullptr;
    if (!context || header.size != sizeof(DibHeader) || header.width <= 0 || header.height == 0 || header.planes != 1 ||
        header.bitCount != 32 || header.compression != 0)
        return fail(kErrorInvalidParameter);
    const std::int64_t rows = std::abs(std::int64_t{header.height});
    const std::int64_t limit = std::numeric_limits<std::int32_t>::max();
    if (rows > limit / 4 / header.width)
        return fail(kErrorNotEnoughMemory);
    const auto bytes = static_cast<std::size_t>(rows * header.width * 4);

    // calloc and not a zeroing container: a large surface costs no page that is never drawn upon.
    void *const memory = std::calloc(1, bytes + kAlignment);
    HBITMAP const bitmap = memory ? new (std::nothrow) HBITMAP__{memory} : nullptr;
    if (!bitmap) {
        std::free(memory);
        return fail(kErrorNotEnoughMemory);
    }
    askForLargePages(memory, bytes + kAlignment);
    if (bits) {
        const auto address = reinterpret_cast<std::uintptr_t>(memory);
        const std::uintptr_t padding = (kAlignment - address % kAlignment) % kAlignment;
        *bits = static_cast<std::uint8_t *>(memory) + padding;
    }
    return bitmap;
}

std::uint32_t lastError() {
    return t_lastError;
}

} // namespace

const DibCalls &systemDibCalls() {
    static constexpr DibCalls calls = {createCompatibleContext, deleteContext, flush, createSection, lastError};
    return calls;
}

void deleteBitmap(HBITMAP bitmap) {
    if (bitmap)
        std::free(bitmap->memory);
    delete bitmap;
}

} // namespace platform
