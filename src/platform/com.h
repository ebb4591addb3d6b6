// SPDX-License-Identifier: MIT
#pragma once

#include "platform/win_types.h"

namespace platform {

/// Makes the object of a component class; ownership of `*object` (set null first) goes to the caller.
using ClassFactory = HRESULT (*)(const GUID &iid, void **object);

/// Creates an in-process component. A factory registered below comes first; on Windows CoCreateInstance follows.
/// Errors: REGDB_E_CLASSNOTREG when nobody offers the class, E_POINTER for a null `object`.
HRESULT createInstance(const GUID &clsid, const GUID &iid, void **object);

/// Registers (or, with null, withdraws) this process's factory of one class. Returns the factory it replaces.
/// Linked-in components and tests use it; thread-safe.
ClassFactory registerClassFactory(const GUID &clsid, ClassFactory factory);

} // namespace platform
