// SPDX-License-Identifier: MIT
#include "platform/win32/multibyte.h"

#include "platform/win_types.h"

namespace platform {

std::wstring wideFromMultibyte(const std::string &text) {
    const int bytes = static_cast<int>(text.size());
    // Not the C library's conversion: its code page is that of a run time nobody has set a locale for.
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_ACP, 0, text.data(), bytes, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text.data(), bytes, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

} // namespace platform
