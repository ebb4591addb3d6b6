// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace platform {

/// The decimal number in an environment variable, of which at most 128 characters are read: blanks, a sign, digits, and
/// whatever follows them. 0 when the variable is absent or starts with no number; what does not fit saturates.
std::int32_t environmentNumber(const char *name);

/// The value of an environment variable, `name` in ASCII. On every system characters beyond ASCII may have been
/// replaced.
std::optional<std::wstring> environmentText(const char *name);

} // namespace platform
