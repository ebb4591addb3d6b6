// SPDX-License-Identifier: MIT
#pragma once

// A process-wide, switchable trace for diagnosis in the field. Off unless the machine's administrator turns it on; a call
// then costs one test. Formats are printf's; the wide form follows Microsoft's rule (%s wide, %S narrow).

#include <atomic>

namespace diaglog {
/// The "DumpMsg" switch. Read by the macros' fast path; set by DiagLogOpen.
extern std::atomic<bool> dumpEnabled;

void print(const char *format, ...);
void printW(const wchar_t *format, ...);
} // namespace diaglog

/// Reads the switches and, when one is on, sets the line prefix "[name] ". Called by each Orvanel constructor.
void DiagLogOpen(const char *name);

/// The same with a chosen location: base key path (null: the default), subkey (may be null), and dump value name
/// (null: "DumpMsg").
void DiagLogOpenKey(const char *name, const wchar_t *subkey, const wchar_t *valueName, const wchar_t *baseKeyPath);

/// Ends the use of the event log.
void DiagLogClose();

/// Writes one narrow line: prefix, message (cut at 1023 characters), line end.
template <typename... Arguments>
inline void DiagLogPrint(const char *format, Arguments... arguments) {
    if (diaglog::dumpEnabled.load(std::memory_order_relaxed))
        diaglog::print(format, arguments...);
}

/// Writes one wide line.
template <typename... Arguments>
inline void DiagLogPrintW(const wchar_t *format, Arguments... arguments) {
    if (diaglog::dumpEnabled.load(std::memory_order_relaxed))
        diaglog::printW(format, arguments...);
}

/// Prints "NAME end\n" for each name present to the process's standard output when it goes, if the log is on.
class DiagLogScopeEnd {
  public:
    /// Copies both names; either may be null.
    DiagLogScopeEnd(const char *narrowName, const wchar_t *wideName);
    ~DiagLogScopeEnd();
    DiagLogScopeEnd(const DiagLogScopeEnd &) = delete;
    DiagLogScopeEnd &operator=(const DiagLogScopeEnd &) = delete;

  private:
    char *m_narrowName = nullptr;
    wchar_t *m_wideName = nullptr;
};
