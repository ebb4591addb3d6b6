// SPDX-License-Identifier: MIT
#pragma once

// Opaque objects that hang together by `next`. Chains are as long as their host makes them, so nothing recurses along
// them, and other modules let a chain be closed to a circle, so every walk counts its steps.

#include <cstddef>

#include "binding/opaque_object.h"

namespace binding {

/// The object that follows, whichever module made it; null at the end.
inline OpaqueObject *nextInChain(const OpaqueObject *object) {
    return object->next ? asOpaque(object->next) : nullptr;
}

/// How many different objects a walk from `head` meets.
std::size_t chainLength(OpaqueObject *head);

/// Whether a walk from `head` leads to `target`.
bool chainReaches(OpaqueObject *head, const OpaqueObject *target);

/// Gives up the reference to a chain's first object (null: to none), and to the others as far as nobody else has them.
void releaseChain(PyObject *head);

} // namespace binding
