// SPDX-License-Identifier: MIT
#pragma once

// Names a Python object without the interpreter's headers.
struct _object;
using PyObject = _object;
