// SPDX-License-Identifier: MIT
#include "platform/win32/gdiplus_session.h"

#include <atomic>
#include <mutex>

namespace platform {
namespace {

/// Keeps the library mapped to the end of the process, however often others free it.
bool pinLibrary() {
    HMODULE library = nullptr;
    return GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN, L"gdiplus.dll", &library) != 0;
}

} // namespace

bool startGdiplus() {
    static std::atomic<bool> started{false};
    static std::mutex starting;
    if (started.load(std::memory_order_acquire))
        return true;
    const std::lock_guard guard(starting);
    if (!started.load(std::memory_order_relaxed)) {
        ULONG_PTR token = 0;
        const Gdiplus::GdiplusStartupInput input;
        const bool runs = pinLibrary() && Gdiplus::GdiplusStartup(&token, &input, nullptr) == Gdiplus::Ok;
        started.store(runs, std::memory_order_release);
    }
    return started.load(std::memory_order_relaxed);
}

} // namespace platform
