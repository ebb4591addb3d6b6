// SPDX-License-Identifier: MIT
#include "platform/log_backend.h"

#include <array>
#include <atomic>
#include <cstdio>
#include <string>
#include <utility>

#include <syslog.h>

#include "platform/posix/log_settings.h"
#include "platform/posix/utf8.h"
#include "platform/unique_handle.h"

namespace platform {
namespace {

/// The whole of a file; nothing when it cannot be read. (A folder opens too, and C++ streams throw when it is read.)
std::optional<std::string> readFile(const std::string &path) {
    const UniqueHandle<std::FILE *, &std::fclose> file(std::fopen(path.c_str(), "rbe"));
    if (!file)
        return std::nullopt;
    std::string text;
    std::array<char, 4096> piece;
    while (const std::size_t length = std::fread(piece.data(), 1, piece.size(), file.get()))
        text.append(piece.data(), length);
    return std::ferror(file.get()) ? std::nullopt : std::optional(std::move(text));
}

class SystemLogBackend final : public LogBackend {
  public:
    std::optional<LogSwitches> readSwitches(const wchar_t *keyPath, const wchar_t *dumpName) override {
        const std::optional<std::string> text = readFile(logSettingsPath());
        if (!text)
            return std::nullopt;
        return parseLogSettings(*text, keyPath, dumpName);
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
