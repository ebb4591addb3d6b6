// SPDX-License-Identifier: MIT
#include "platform/environment.h"

#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/win_types.h"

namespace platform {

std::int32_t environmentNumber(const char *name) {
    wchar_t value[129] = {};
    const DWORD length = GetEnvironmentVariableW(std::wstring(name, name + std::strlen(name)).c_str(), value, 129);
    // A longer value is not stored at all.
    return length > 0 && length < 129 ? _wtoi(value) : 0;
}

} // namespace platform
