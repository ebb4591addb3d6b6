// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/log_backend.h"
#include "support/diag_log.h"

/// Takes the place of the log's switches and sinks while it lives, and keeps narrow and wide lines in one order. Any
/// thread may log.
class OrderedLog final : public platform::LogBackend {
  public:
    OrderedLog() : m_previous(diaglog::exchangeBackend(this)) { DiagLogOpen("Orvanel"); }
    ~OrderedLog() { diaglog::exchangeBackend(m_previous); }
    OrderedLog(const OrderedLog &) = delete;
    OrderedLog &operator=(const OrderedLog &) = delete;

    /// What was written, behind "a " or, when it came through the wide entry, "w "; line breaks as "\n". The number of
    /// milliseconds that a frame's line tells is a "#".
    std::vector<std::string> lines() const {
        const std::lock_guard guard(m_mutex);
        return m_lines;
    }
    /// A heading between the lines.
    void head(const std::string &text) { append("# " + text); }

    std::optional<platform::LogSwitches> readSwitches(const wchar_t *, const wchar_t *) override {
        return platform::LogSwitches{true, false};
    }
    void writeDebug(const char *line) override { append("a " + shown(line)); }
    void writeDebugW(const wchar_t *line) override {
        const std::wstring wide = line;
        std::string narrow;
        for (const wchar_t character : wide)
            narrow.push_back(character < 128 ? static_cast<char>(character) : '?');
        append("w " + shown(narrow));
    }
    bool openEventTrace() override { return false; }
    void closeEventTrace() override {}
    void writeEventTrace(const wchar_t *) override { append("nothing goes to the event log"); }
    void writeOutput(const char *) override { append("nothing goes to the standard output"); }
    void writeOutputW(const wchar_t *) override { append("nothing goes to the standard output"); }

  private:
    static std::string shown(std::string text) {
        for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos;)
            text.replace(at, 1, "\\n");
        const std::string clock = "m_renderTime=";
        if (const std::size_t at = text.find(clock); at != std::string::npos) {
            const std::size_t number = at + clock.size();
            text.replace(number, text.find(',', number) - number, "#");
        }
        return text;
    }
    void append(std::string line) {
        const std::lock_guard guard(m_mutex);
        m_lines.push_back(std::move(line));
    }

    mutable std::mutex m_mutex; ///< guards m_lines
    std::vector<std::string> m_lines;
    platform::LogBackend *m_previous;
};
