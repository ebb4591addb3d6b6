// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace platform {

/// Wide text as UTF-8. What is no Unicode scalar value becomes U+FFFD.
std::string utf8FromWide(const wchar_t *wide);

} // namespace platform
