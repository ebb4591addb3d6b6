// SPDX-License-Identifier: MIT
#include "platform/environment.h"

#include "platform/multibyte.h"
#include "platform/win_types.h"

namespace platform {

std::optional<std::wstring> environmentText(const char *name) {
    // The process's own block, not the C run time's copy: the host may use another run time.
    const std::wstring wideName = wideFromMultibyte(std::string(name));
    std::wstring text(1, L'\0');
    for (;;) {
        SetLastError(ERROR_SUCCESS);
        const DWORD length = GetEnvironmentVariableW(wideName.c_str(), text.data(), static_cast<DWORD>(text.size()));
        if (length == 0 && GetLastError() != ERROR_SUCCESS)
            return std::nullopt;
        // What does not fit is told with its terminator, and may have grown again when we come back.
        const bool fits = length < text.size();
        text.resize(length);
        if (fits)
            return text;
    }
}

} // namespace platform
