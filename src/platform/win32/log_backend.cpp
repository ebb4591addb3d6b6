// SPDX-License-Identifier: MIT
#include "platform/log_backend.h"

#include <cstdio>
#include <cwchar>

#include "platform/win32/event_trace.h"
#include "platform/win32/handles.h"

namespace platform {
namespace {

bool isOn(const RegistryKey &key, const wchar_t *name) {
    DWORD value = 0;
    DWORD size = sizeof value;
    DWORD type = REG_NONE;
    const LSTATUS status = RegQueryValueExW(key.get(), name, nullptr, &type, reinterpret_cast<BYTE *>(&value), &size);
    return status == ERROR_SUCCESS && type == REG_DWORD && value != 0;
}

class SystemLogBackend final : public LogBackend {
  public:
    std::optional<LogSwitches> readSwitches(const wchar_t *keyPath, const wchar_t *dumpName) override {
        RegistryKey key;
        if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, keyPath, 0, KEY_QUERY_VALUE, key.put()) != ERROR_SUCCESS)
            return std::nullopt;
        return LogSwitches{isOn(key, dumpName), isOn(key, kEventTraceSwitch)};
    }

    void writeDebug(const char *line) override { OutputDebugStringA(line); }
    void writeDebugW(const wchar_t *line) override { OutputDebugStringW(line); }

    bool openEventTrace() override { return m_eventTrace.open(); }
    void closeEventTrace() override { m_eventTrace.close(); }
    void writeEventTrace(const wchar_t *line) override { m_eventTrace.write(line); }

    void writeOutput(const char *text) override { std::fputs(text, stdout); }
    void writeOutputW(const wchar_t *text) override { std::fputws(text, stdout); }

  private:
    EventTrace m_eventTrace;
};

} // namespace

LogBackend &systemLogBackend() {
    // Never destroyed: threads of the host may still log while the process ends.
    static SystemLogBackend *const backend = new SystemLogBackend;
    return *backend;
}

} // namespace platform
