// SPDX-License-Identifier: MIT
#pragma once

// The interpreter's header, in the one order that works: standard headers first, since Python.h redefines some of their
// names on Windows.

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <string>

#ifndef PY_SSIZE_T_CLEAN
#define PY_SSIZE_T_CLEAN
#endif
#include <Python.h>

// On Windows Python.h renames these two with macros, which breaks std::snprintf in every file that includes it.
#undef snprintf
#undef vsnprintf
