// SPDX-License-Identifier: MIT
#include "platform/environment.h"

#include <cstdlib>
#include <limits>
#include <string>

namespace platform {

std::int32_t environmentNumber(const char *name) {
    const char *const text = std::getenv(name);
    if (!text)
        return 0;
    const long long value = std::strtoll(std::string(text).substr(0, 128).c_str(), nullptr, 10);
    // Beyond 32 bits the wide conversion that hosts know saturates.
    if (value > std::numeric_limits<std::int32_t>::max())
        return std::numeric_limits<std::int32_t>::max();
    if (value < std::numeric_limits<std::int32_t>::min())
        return std::numeric_limits<std::int32_t>::min();
    return static_cast<std::int32_t>(value);
}

} // namespace platform
