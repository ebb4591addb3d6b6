// SPDX-License-Identifier: MIT
#include "platform/log_backend.h"

#include <cstdio>
#include <cwchar>

namespace platform {

std::optional<LogSwitches> readLogSwitches(const wchar_t *, const wchar_t *) {
    return std::nullopt;
}

void writeDebugLine(const char *line) {
    std::fputs(line, stderr);
}
void writeDebugLineW(const wchar_t *line) {
    std::fprintf(stderr, "%ls", line);
}

bool openEventTrace() {
    return false;
}
void closeEventTrace() {}
void writeEventTrace(const wchar_t *) {}

void formatWide(wchar_t *buffer, std::size_t size, const wchar_t *format, va_list arguments) {
    if (std::vswprintf(buffer, size, format, arguments) < 0)
        buffer[size - 1] = L'\0';
}

} // namespace platform
