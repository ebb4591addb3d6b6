// SPDX-License-Identifier: MIT
#include "support/diag_log.h"

#include <algorithm>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <string>

#include "platform/log_backend.h"

namespace diaglog {

std::atomic<bool> dumpEnabled{false};

namespace {

constexpr std::size_t kMessageSize = 1024;
constexpr std::size_t kPrefixSize = 64;

std::atomic<bool> eventTraceEnabled{false};
char prefix[kPrefixSize] = "";
wchar_t widePrefix[kPrefixSize] = L"";

void open(const char *name, const wchar_t *keyPath, const wchar_t *valueName) {
    if (const auto switches = platform::readLogSwitches(keyPath, valueName)) {
        dumpEnabled = switches->dump;
        eventTraceEnabled = switches->eventTrace;
    }
    if (!dumpEnabled && !eventTraceEnabled)
        return;
    if (name && std::strlen(name) < kPrefixSize) {
        const std::string text = (std::string("[") + name + "] ").substr(0, kPrefixSize - 1);
        std::copy_n(text.c_str(), text.size() + 1, prefix);
        std::copy_n(text.c_str(), text.size() + 1, widePrefix);
    }
    if (eventTraceEnabled)
        eventTraceEnabled = platform::openEventTrace();
}

} // namespace

void print(const char *format, ...) {
    char message[kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(message, kMessageSize, format, arguments);
    va_end(arguments);
    const std::string line = std::string(prefix) + message + "\n";
    if (eventTraceEnabled)
        platform::writeEventTrace(std::wstring(line.begin(), line.end()).c_str());
    else
        platform::writeDebugLine(line.c_str());
}

void printW(const wchar_t *format, ...) {
    wchar_t message[kMessageSize];
    va_list arguments;
    va_start(arguments, format);
    platform::formatWide(message, kMessageSize, format, arguments);
    va_end(arguments);
    const std::wstring line = std::wstring(widePrefix) + message + L"\n";
    if (eventTraceEnabled)
        platform::writeEventTrace(line.c_str());
    else
        platform::writeDebugLineW(line.c_str());
}

} // namespace diaglog

void DiagLogOpen(const char *name) { diaglog::open(name, nullptr, nullptr); }
