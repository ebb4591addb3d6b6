// SPDX-License-Identifier: MIT
#include "platform/printf.h"

#include <cstdio>
#include <cwchar>

namespace platform {

void formatNarrow(char *buffer, std::size_t size, const char *format, va_list arguments) {
    if (std::vsnprintf(buffer, size, format, arguments) < 0)
        buffer[size - 1] = '\0';
}

void formatWide(wchar_t *buffer, std::size_t size, const wchar_t *format, va_list arguments) {
    // The standard's function has the standard's %s; this one keeps Microsoft's, and does not terminate what it cuts.
    _vsnwprintf(buffer, size - 1, format, arguments);
    buffer[size - 1] = L'\0';
}

} // namespace platform
