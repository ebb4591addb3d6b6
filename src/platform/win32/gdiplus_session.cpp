// SPDX-License-Identifier: MIT
#include "platform/win32/gdiplus_session.h"

#include <atomic>
#include <mutex>

namespace platform {

bool startGdiplus() {
    static std::atomic<bool> started{false};
    static std::mutex starting;
    if (started.load(std::memory_order_acquire))
        return true;
    const std::lock_guard guard(starting);
    if (!started.load(std::memory_order_relaxed)) {
        ULONG_PTR token = 0;
        const Gdiplus::GdiplusStartupInput input;
        started.store(Gdiplus::GdiplusStartup(&token, &input, nullptr) == Gdiplus::Ok, std::memory_order_release);
    }
    return started.load(std::memory_order_relaxed);
}

} // namespace platform
