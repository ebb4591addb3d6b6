// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace platform {

/// From this size on a block is written past the caches.
inline constexpr std::size_t kStreamedBlock = std::size_t{12} << 20;

/// Copies one block of pixels, as fast as the machine allows for its size. The two must not overlap.
void copyBlock(void *destination, const void *source, std::size_t bytes);
/// The same for one of several blocks, `altogether` bytes, that are written before any of them is read.
void copyBlock(void *destination, const void *source, std::size_t bytes, std::size_t altogether);

} // namespace platform
