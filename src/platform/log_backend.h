// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

// What the diagnostic log needs of the system: where its switches stand, and where its lines go.

namespace platform {

/// The key path of the switches unless the caller chooses another one.
inline constexpr wchar_t kDefaultLogKey[] = L"SoftWare\\Brannock\\Tintmoor";
/// The names of the two switches.
inline constexpr wchar_t kDumpSwitch[] = L"DumpMsg";
inline constexpr wchar_t kEventTraceSwitch[] = L"DumpInETW";

/// The two switches as stored by the machine's administrator.
struct LogSwitches {
    bool dump = false;       ///< write lines at all
    bool eventTrace = false; ///< write them to the system's event log instead of the debugger

    friend bool operator==(const LogSwitches &, const LogSwitches &) = default;
};

/// Sinks and switches of the log. Every operation may be called from any thread; failures are silent.
class LogBackend {
  public:
    /// Reads the switches at a key path, the first one from the value `dumpName`; a value that is absent or no number
    /// is off. Nothing when the location does not open.
    virtual std::optional<LogSwitches> readSwitches(const wchar_t *keyPath, const wchar_t *dumpName) = 0;

    /// Writes a line, line end included, to the debugger.
    virtual void writeDebug(const char *line) = 0;
    virtual void writeDebugW(const wchar_t *line) = 0;

    /// Connects to the event log, once until it is closed; false when the system has none.
    virtual bool openEventTrace() = 0;
    virtual void closeEventTrace() = 0;
    /// Writes a line to the event log; nothing when that is not connected.
    virtual void writeEventTrace(const wchar_t *line) = 0;

    /// Writes text to the process's standard output.
    virtual void writeOutput(const char *text) = 0;
    virtual void writeOutputW(const wchar_t *text) = 0;

  protected:
    ~LogBackend() = default;
};

/// This system's own. Windows: the registry below HKEY_LOCAL_MACHINE, OutputDebugString, Event Tracing for Windows.
/// Elsewhere: a settings file, standard error, syslog (docs/logging.md).
LogBackend &systemLogBackend();

} // namespace platform
