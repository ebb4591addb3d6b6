// SPDX-License-Identifier: MIT
#include "platform/environment.h"

#include <cstdlib>

#include "platform/multibyte.h"

namespace platform {

std::optional<std::wstring> environmentText(const char *name) {
    const char *const text = std::getenv(name);
    return text ? std::optional(wideFromMultibyte(std::string(text))) : std::nullopt;
}

} // namespace platform
