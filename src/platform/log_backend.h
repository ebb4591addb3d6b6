// SPDX-License-Identifier: MIT
#pragma once

#include <cstdarg>
#include <cstddef>
#include <optional>

// What the diagnostic log needs of the system: where its switches stand, and where its lines go.

namespace platform {

/// The two switches as stored by the machine's administrator.
struct LogSwitches {
    bool dump = false;       ///< "DumpMsg": write lines at all
    bool eventTrace = false; ///< "DumpInETW": write them to the system's event log instead of the debugger
};

/// Reads the switches. `keyPath` null means the default location; `valueName` null means "DumpMsg". Nothing when the
/// location does not exist. Windows: registry, HKEY_LOCAL_MACHINE; elsewhere: a settings file (docs/logging.md).
std::optional<LogSwitches> readLogSwitches(const wchar_t *keyPath, const wchar_t *valueName);

/// Writes one line, line end included, to the debugger (standard error off Windows).
void writeDebugLine(const char *line);
void writeDebugLineW(const wchar_t *line);

/// Connects to the event log, once per process; false when it is not available.
bool openEventTrace();
void closeEventTrace();
/// Writes one line to the event log; nothing when it is not connected.
void writeEventTrace(const wchar_t *line);

/// Formats like Microsoft's vswprintf: %S is narrow, %s is wide. Truncates to `size` - 1 characters, always terminated.
void formatWide(wchar_t *buffer, std::size_t size, const wchar_t *format, va_list arguments);

} // namespace platform
