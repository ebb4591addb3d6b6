// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

/// Calls an operation by its slot number through the object's method table, as a caller does that was compiled
/// elsewhere against the numbers alone.
template <typename Result, typename... Arguments>
Result callSlot(void *object, std::size_t slot, Arguments... arguments) {
    void *const *const table = *static_cast<void *const *const *>(object);
    using Operation = Result (*)(void *, Arguments...);
    return reinterpret_cast<Operation>(table[slot])(object, arguments...);
}
