// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace platform {

/// The decimal number in an environment variable (at most 128 characters are read); 0 when absent or not a number.
std::int32_t environmentNumber(const char *name);

} // namespace platform
