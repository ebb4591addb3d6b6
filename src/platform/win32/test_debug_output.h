// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

#include "platform/win_types.h"

namespace platform {

/// For tests: sees what this process sends to the debugger, narrow and wide, while it lives. One at a time.
///
/// OutputDebugString is an exception that a debugger catches; without one, a vectored handler may. The wide form raises
/// a code of its own first and, where nobody takes that, the narrow one with the text converted.
class DebugOutputCapture {
  public:
    DebugOutputCapture() : m_handler(AddVectoredExceptionHandler(1, &handle)) { current() = this; }
    ~DebugOutputCapture() {
        RemoveVectoredExceptionHandler(m_handler);
        current() = nullptr;
    }
    DebugOutputCapture(const DebugOutputCapture &) = delete;
    DebugOutputCapture &operator=(const DebugOutputCapture &) = delete;

    std::vector<std::string> narrow() const {
        const std::lock_guard guard(m_mutex);
        return m_narrow;
    }
    std::vector<std::wstring> wide() const {
        const std::lock_guard guard(m_mutex);
        return m_wide;
    }

  private:
    static constexpr DWORD kNarrowText = 0x40010006;
    static constexpr DWORD kWideText = 0x4001000A;

    static std::atomic<DebugOutputCapture *> &current() {
        static std::atomic<DebugOutputCapture *> capture{nullptr};
        return capture;
    }

    static LONG CALLBACK handle(EXCEPTION_POINTERS *exception) {
        const EXCEPTION_RECORD &record = *exception->ExceptionRecord;
        DebugOutputCapture *const capture = current();
        if (!capture || record.NumberParameters < 2)
            return EXCEPTION_CONTINUE_SEARCH;
        const ULONG_PTR length = record.ExceptionInformation[0] - 1; // counts the terminator
        const ULONG_PTR text = record.ExceptionInformation[1];
        const std::lock_guard guard(capture->m_mutex);
        if (record.ExceptionCode == kNarrowText)
            capture->m_narrow.emplace_back(reinterpret_cast<const char *>(text), length);
        else if (record.ExceptionCode == kWideText)
            capture->m_wide.emplace_back(reinterpret_cast<const wchar_t *>(text), length);
        else
            return EXCEPTION_CONTINUE_SEARCH;
        return EXCEPTION_CONTINUE_EXECUTION;
    }

    void *m_handler;
    mutable std::mutex m_mutex; ///< guards what follows
    std::vector<std::string> m_narrow;
    std::vector<std::wstring> m_wide;
};

} // namespace platform
