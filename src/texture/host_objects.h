// SPDX-License-Identifier: MIT
#pragma once

// What the texture map asks of the host's Python objects. Every function takes the interpreter lock for its call,
// leaves no Python error pending, and answers "nothing" for whatever goes wrong.

#include <string>

#include "callback/python_fwd.h"

/// Whether an argument of Create was given: neither null nor None.
bool isGiven(PyObject *object);

/// Calls `method` without arguments; the pointer that the result carries, or null.
void *askPointer(PyObject *object, const char *method);

/// Calls `method` without arguments; the result's text, or an empty text unless it is a byte string without null bytes.
std::string askText(PyObject *object, const char *method);
