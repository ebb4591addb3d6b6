// SPDX-License-Identifier: MIT
#pragma once

#include <cstdarg>
#include <cstddef>

namespace platform {

/// Formats like vsnprintf: at most `size` - 1 characters and always a terminator. %S is a wide text.
void formatNarrow(char *buffer, std::size_t size, const char *format, va_list arguments);

/// Formats by Microsoft's rule for wide formats: %s and %c are wide, %S, %C and %hs are narrow, %ls is wide.
void formatWide(wchar_t *buffer, std::size_t size, const wchar_t *format, va_list arguments);

} // namespace platform
