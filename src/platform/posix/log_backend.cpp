// SPDX-License-Identifier: MIT
#include "platform/log_backend.h"

#include <atomic>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

#include <syslog.h>

#include "platform/posix/log_settings.h"
#include "platform/posix/utf8.h"

namespace platform {
namespace {

class SystemLogBackend final : public LogBackend {
  public:
    std::optional<LogSwitches> readSwitches(const wchar_t *keyPath, const wchar_t *dumpName) override {
        std::ifstream file(logSettingsPath(), std::ios::binary);
        const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        // A folder opens and then cannot be read.
        if (!file.is_open() || file.bad())
            return std::nullopt;
        return parseLogSettings(text, keyPath, dumpName);
    }

    // One call a line: the stream's own lock keeps lines of different threads apart.
    void writeDebug(const char *line) override { std::fputs(line, stderr); }
    void writeDebugW(const wchar_t *line) override { writeDebug(utf8FromWide(line).c_str()); }

    // syslog connects by itself. The connection is the process's, so it is neither named nor closed here.
    bool openEventTrace() override {
        m_eventTraceOpen = true;
        return true;
    }
    void closeEventTrace() override { m_eventTraceOpen = false; }
    void writeEventTrace(const wchar_t *line) override {
        if (m_eventTraceOpen)
            syslog(LOG_USER | LOG_DEBUG, "%s", utf8FromWide(line).c_str());
    }

    // Wide text goes out as bytes too: a C stream that has seen bytes refuses wide characters.
    void writeOutput(const char *text) override { std::fputs(text, stdout); }
    void writeOutputW(const wchar_t *text) override { writeOutput(utf8FromWide(text).c_str()); }

  private:
    std::atomic<bool> m_eventTraceOpen{false};
};

} // namespace

LogBackend &systemLogBackend() {
    // Never destroyed: threads of the host may still log while the process ends.
    static SystemLogBackend *const backend = new SystemLogBackend;
    return *backend;
}

} // namespace platform
