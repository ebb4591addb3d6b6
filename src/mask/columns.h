// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace Quill {

/// A column as the crossing table stores it: 0 .. 65535 less 32768, so that signed 16-bit instructions order it.
using StoredColumn = std::int16_t;

inline constexpr std::int32_t kColumnBias = 32768;
inline constexpr std::int32_t kMaxColumn = 65535;

constexpr StoredColumn storeColumn(std::int32_t column) {
    return static_cast<StoredColumn>(column - kColumnBias);
}
constexpr std::int32_t columnOf(StoredColumn stored) {
    return stored + kColumnBias;
}

/// Rows that are swept together.
inline constexpr std::int32_t kRowsAtOnce = 8;

} // namespace Quill
