// SPDX-License-Identifier: MIT
#pragma once

// A process-wide, switchable trace for diagnosis in the field. Off unless the machine's administrator turns it on
// (docs/logging.md); a call then costs one test and formats nothing, so hot paths may log freely. All threads may log
// at once: a line is formatted in memory of its call, so lines may come in any order but are never mixed up.
//
// Formats are printf's, checked when compiled (support/printf_format.h). In the wide form %s is wide and %S narrow.

#include <atomic>
#include <optional>
#include <string>
#include <type_traits>

#include "support/printf_format.h"

namespace platform {
class LogBackend;
}

namespace diaglog {

/// The "DumpMsg" switch; nothing is written while it is off. Set by DiagLogOpen only.
inline std::atomic<bool> dumpEnabled{false};

inline bool isDumpEnabled() {
    return dumpEnabled.load(std::memory_order_relaxed);
}

/// The calls that have passed that test.
void print(const char *format, ...);
void printW(const wchar_t *format, ...);

/// Starts the log over as in a fresh process (switches off, no prefix) with other switches and sinks, for tests; null
/// means the system's own. Returns the earlier ones. The caller keeps them alive until no thread logs any more.
platform::LogBackend *exchangeBackend(platform::LogBackend *backend);

} // namespace diaglog

/// Reads the switches and, when one is on, sets the line prefix to "[name] ". A name that is null or has 64 or more
/// characters leaves the prefix as it was; switches whose location does not open keep their values. Called by each
/// Orvanel constructor.
void DiagLogOpen(const char *name);

/// The same with a chosen location: the base key path (null: the default one), behind it a backslash and the subkey
/// (may be null), together cut at 260 characters; the dump switch is the value `valueName` (null: "DumpMsg").
void DiagLogOpenKey(const char *name, const wchar_t *subkey, const wchar_t *valueName, const wchar_t *baseKeyPath);

/// Ends the use of the event log. Lines that are meant for it are dropped until the log is opened again.
void DiagLogClose();

/// Writes one line: prefix, message (cut at 1023 characters), line end; to the debugger, or to the event log when the
/// "DumpInETW" switch is on as well.
template <typename... Arguments>
inline void DiagLogPrint(diaglog::Format<char, std::type_identity_t<Arguments>...> format, Arguments... arguments) {
    if (diaglog::isDumpEnabled()) [[unlikely]]
        diaglog::print(format.text(), diaglog::passed(arguments)...);
}

/// The wide form.
template <typename... Arguments>
inline void DiagLogPrintW(diaglog::Format<wchar_t, std::type_identity_t<Arguments>...> format, Arguments... arguments) {
    if (diaglog::isDumpEnabled()) [[unlikely]]
        diaglog::printW(format.text(), diaglog::passed(arguments)...);
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
    std::optional<std::string> m_narrowName;
    std::optional<std::wstring> m_wideName;
};
