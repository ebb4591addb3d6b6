// SPDX-License-Identifier: MIT
#pragma once

#include "callback/python_fwd.h"

/// Reads the raw pointer that an opaque pointer object of any type carries; false (no Python error left pending) for
/// anything else, plain numbers included. Called with the interpreter lock held.
using PointerExtractor = bool (*)(PyObject *object, void **pointer);

/// Sets how the texture map reads the pointers that the host's Python objects answer. The scripting interface registers
/// its conversion when the module is imported; until then every object is refused. Returns the extractor it replaces.
PointerExtractor registerPointerExtractor(PointerExtractor extractor);

/// The pointer that `object` carries; false when it carries none, or carries null.
bool extractPointer(PyObject *object, void **pointer);
