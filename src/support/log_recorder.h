// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/log_backend.h"
#include "support/diag_log.h"

// For tests of any room that look at what is logged:
//
//     LogRecorder log;                 // the log is on, with the prefix "[Orvanel] "
//     handler.ConvertPoints2Mask(...);
//     EXPECT_EQ(log.messages(), (std::vector<std::string>{"Quill::MaskHandler::ConvertPoints2Mask() enter\n", ...}));

/// Takes the place of the system's switches and sinks while it lives, and keeps every line. Any thread may log.
class LogRecorder final : public platform::LogBackend {
  public:
    /// Turns the debugger's lines on. Other switches: set `switches` and call DiagLogOpen again.
    LogRecorder() : m_previous(diaglog::exchangeBackend(this)) { DiagLogOpen("Orvanel"); }
    ~LogRecorder() { diaglog::exchangeBackend(m_previous); }
    LogRecorder(const LogRecorder &) = delete;
    LogRecorder &operator=(const LogRecorder &) = delete;

    /// The narrow lines for the debugger, whole.
    std::vector<std::string> lines() const { return copy(m_lines); }
    /// The same without prefix and the line end that the log adds: what the callers wrote.
    std::vector<std::string> messages() const {
        std::vector<std::string> result = lines();
        for (std::string &line : result) {
            const std::size_t prefix = line.find("] ");
            line = line.substr(prefix == std::string::npos ? 0 : prefix + 2);
            line.pop_back();
        }
        return result;
    }
    std::vector<std::wstring> wideLines() const { return copy(m_wideLines); }
    std::vector<std::wstring> eventTraceLines() const { return copy(m_eventTraceLines); }
    /// Everything written to the standard output.
    std::wstring output() const { return copy(m_output); }
    /// Forgets what was recorded so far.
    void clear() {
        const std::lock_guard guard(m_mutex);
        m_lines.clear();
        m_wideLines.clear();
        m_eventTraceLines.clear();
        m_output.clear();
    }

    // What the log will find; set while no other thread opens it.
    std::optional<platform::LogSwitches> switches =
        platform::LogSwitches{true, false}; ///< none: the location is missing
    bool hasEventTrace = true;
    std::wstring keyPath;  ///< asked for last
    std::wstring dumpName; ///< asked for last
    int openings = 0;      ///< of the event log, that found it closed

    std::optional<platform::LogSwitches> readSwitches(const wchar_t *path, const wchar_t *name) override {
        keyPath = path;
        dumpName = name;
        return switches;
    }
    void writeDebug(const char *line) override { append(m_lines, line); }
    void writeDebugW(const wchar_t *line) override { append(m_wideLines, line); }
    bool openEventTrace() override {
        if (hasEventTrace && !m_eventTraceOpen)
            ++openings;
        m_eventTraceOpen = hasEventTrace;
        return hasEventTrace;
    }
    void closeEventTrace() override { m_eventTraceOpen = false; }
    void writeEventTrace(const wchar_t *line) override {
        if (m_eventTraceOpen)
            append(m_eventTraceLines, line);
    }
    void writeOutput(const char *text) override {
        append(m_output, std::wstring(text, text + std::char_traits<char>::length(text)));
    }
    void writeOutputW(const wchar_t *text) override { append(m_output, text); }

  private:
    template <typename Value>
    Value copy(const Value &value) const {
        const std::lock_guard guard(m_mutex);
        return value;
    }
    template <typename Text>
    void append(std::vector<Text> &texts, const typename Text::value_type *text) {
        const std::lock_guard guard(m_mutex);
        texts.emplace_back(text);
    }
    void append(std::wstring &all, const std::wstring &text) {
        const std::lock_guard guard(m_mutex);
        all += text;
    }

    mutable std::mutex m_mutex; ///< guards what follows
    std::vector<std::string> m_lines;
    std::vector<std::wstring> m_wideLines;
    std::vector<std::wstring> m_eventTraceLines;
    std::wstring m_output;
    std::atomic<bool> m_eventTraceOpen{false};

    // Last, so that everything above is there when the first line comes.
    platform::LogBackend *m_previous;
};
