// SPDX-License-Identifier: MIT
#include "support/diag_log.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstring>
#include <cwchar>
#include <mutex>
#include <string_view>

#include "platform/fork.h"
#include "platform/log_backend.h"
#include "platform/multibyte.h"
#include "platform/printf.h"

namespace diaglog {
namespace {

// Sizes include the terminator, except the last two.
constexpr std::size_t kMessageSize = 1024;
constexpr std::size_t kPrefixSize = 64;
constexpr std::size_t kLineSize = kPrefixSize - 1 + kMessageSize - 1 + 1 + 1;
constexpr std::size_t kEventTraceLength = 1024; ///< wide characters of a narrow line that reach the event log
constexpr std::size_t kKeyPathLength = 260;

template <typename Character>
using Prefix = std::array<Character, kPrefixSize>;

/// What all Orvanel objects share. The switches are read without the lock: a line that is written while they change
/// goes the old way or the new one.
struct State {
    std::atomic<platform::LogBackend *> backend{&platform::systemLogBackend()};
    std::atomic<bool> eventTraceEnabled{false};
    std::mutex opening;     ///< one DiagLogOpen or DiagLogClose at a time
    std::mutex prefixMutex; ///< guards the prefixes
    Prefix<char> prefix{};
    Prefix<wchar_t> widePrefix{};

    const Prefix<char> &prefixOf(char) const { return prefix; }
    const Prefix<wchar_t> &prefixOf(wchar_t) const { return widePrefix; }
};

State &state() {
    // Never destroyed: threads of the host may still log while the process ends.
    static State *const instance = [] {
        State *const made = new State;
        platform::holdAcrossForks(made->opening);
        platform::holdAcrossForks(made->prefixMutex);
        return made;
    }();
    return *instance;
}

/// "[name] ", cut at the size of a prefix.
template <typename Character>
Prefix<Character> prefixFor(std::basic_string_view<Character> name) {
    Prefix<Character> prefix{};
    std::basic_string<Character> text(1, '[');
    text.append(name).append({']', ' '});
    text.copy(prefix.data(), prefix.size() - 1);
    return prefix;
}

void setPrefix(const char *name) {
    if (!name || std::strlen(name) >= kPrefixSize)
        return;
    const Prefix<char> prefix = prefixFor(std::string_view(name));
    const Prefix<wchar_t> widePrefix = prefixFor(std::wstring_view(platform::wideFromMultibyte(std::string(name))));
    const std::lock_guard guard(state().prefixMutex);
    state().prefix = prefix;
    state().widePrefix = widePrefix;
}

void open(const char *name, const wchar_t *keyPath, const wchar_t *dumpName) {
    const std::lock_guard guard(state().opening);
    platform::LogBackend &backend = *state().backend.load();
    platform::LogSwitches switches{dumpEnabled, state().eventTraceEnabled};
    if (const auto stored = backend.readSwitches(keyPath, dumpName))
        switches = *stored;
    // Both come into force together with what they need, the test of the callers last.
    if (switches.dump || switches.eventTrace)
        setPrefix(name);
    state().eventTraceEnabled = switches.eventTrace && backend.openEventTrace();
    dumpEnabled = switches.dump;
}

/// A line in memory of the call: prefix, message, line end.
template <typename Character>
class Line {
  public:
    explicit Line(const std::array<Character, kMessageSize> &message) {
        {
            const std::lock_guard guard(state().prefixMutex);
            append(state().prefixOf(Character()).data());
        }
        append(message.data());
        *m_end++ = '\n';
    }
    Line(const Line &) = delete;
    Line &operator=(const Line &) = delete;
    const Character *text() const { return m_text.data(); }

  private:
    void append(const Character *text) {
        while (*text)
            *m_end++ = *text++;
    }

    std::array<Character, kLineSize> m_text{};
    Character *m_end = m_text.data();
};

} // namespace

void print(const char *format, ...) {
    std::array<char, kMessageSize> message{};
    va_list arguments;
    va_start(arguments, format);
    platform::formatNarrow(message.data(), message.size(), format, arguments);
    va_end(arguments);
    const Line line(message);
    platform::LogBackend &backend = *state().backend.load();
    if (!state().eventTraceEnabled) {
        backend.writeDebug(line.text());
        return;
    }
    std::array<wchar_t, kLineSize> wide{};
    platform::wideFromMultibyte(line.text(), wide.data(), wide.size());
    wide[kEventTraceLength] = L'\0';
    backend.writeEventTrace(wide.data());
}

void printW(const wchar_t *format, ...) {
    std::array<wchar_t, kMessageSize> message{};
    va_list arguments;
    va_start(arguments, format);
    platform::formatWide(message.data(), message.size(), format, arguments);
    va_end(arguments);
    const Line line(message);
    platform::LogBackend &backend = *state().backend.load();
    if (state().eventTraceEnabled)
        backend.writeEventTrace(line.text());
    else
        backend.writeDebugW(line.text());
}

platform::LogBackend *exchangeBackend(platform::LogBackend *backend) {
    const std::lock_guard opening(state().opening);
    const std::lock_guard guard(state().prefixMutex);
    dumpEnabled = false;
    state().eventTraceEnabled = false;
    state().prefix = {};
    state().widePrefix = {};
    return state().backend.exchange(backend ? backend : &platform::systemLogBackend());
}

} // namespace diaglog

void DiagLogOpen(const char *name) {
    DiagLogOpenKey(name, nullptr, nullptr, nullptr);
}

void DiagLogOpenKey(const char *name, const wchar_t *subkey, const wchar_t *valueName, const wchar_t *baseKeyPath) {
    std::wstring keyPath = baseKeyPath ? baseKeyPath : platform::kDefaultLogKey;
    if (subkey)
        keyPath.append(L"\\").append(subkey);
    keyPath.resize(std::min(keyPath.size(), diaglog::kKeyPathLength));
    diaglog::open(name, keyPath.c_str(), valueName ? valueName : platform::kDumpSwitch);
}

void DiagLogClose() {
    const std::lock_guard guard(diaglog::state().opening);
    diaglog::state().backend.load()->closeEventTrace();
}

DiagLogScopeEnd::DiagLogScopeEnd(const char *narrowName, const wchar_t *wideName) {
    if (narrowName)
        m_narrowName = narrowName;
    if (wideName)
        m_wideName = wideName;
}

DiagLogScopeEnd::~DiagLogScopeEnd() {
    if (!diaglog::isDumpEnabled())
        return;
    platform::LogBackend &backend = *diaglog::state().backend.load();
    if (m_narrowName)
        backend.writeOutput((*m_narrowName + " end\n").c_str());
    if (m_wideName)
        backend.writeOutputW((*m_wideName + L" end\n").c_str());
}
