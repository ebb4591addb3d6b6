// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "binding/entry.h"

namespace binding {

/// Every entry of the module, in the order in which they are registered.
std::span<const Entry> entryTable();

} // namespace binding
