// SPDX-License-Identifier: MIT
#include "platform/multibyte.h"

#include <cstring>

#include "platform/win_types.h"

namespace platform {

std::size_t wideFromMultibyte(const char *text, wchar_t *wide, std::size_t size) {
    // No character grows by becoming wide, so as many bytes as there is room always fit. The C library's conversion
    // would use the code page of a run time for which nobody has set a locale.
    const int bytes = static_cast<int>(strnlen(text, size - 1));
    const int length = MultiByteToWideChar(CP_ACP, 0, text, bytes, wide, static_cast<int>(size - 1));
    wide[length] = L'\0';
    return static_cast<std::size_t>(length);
}

} // namespace platform
