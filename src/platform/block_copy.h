// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstring>

namespace platform {

/// Copies one large block that the processor will not read again soon.
inline void copyBlock(void *destination, const void *source, std::size_t bytes) {
    std::memcpy(destination, source, bytes);
}

} // namespace platform
