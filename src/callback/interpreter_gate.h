// SPDX-License-Identifier: MIT
#pragma once

#include "callback/python_fwd.h"

// Keeps threads that come from outside away from an interpreter that is ending. See the source for how.

/// Prepares the interpreter for deliveries from other threads and begins to watch for its end; opens the gate. Lock
/// held, once an interpreter. New reference to an object for the module's dictionary, or null with an error pending.
PyObject *watchInterpreter();

/// Whether the interpreter has begun to end, or is not there. Events are dropped from then on.
bool interpreterIsEnding();

/// Whether the interpreter takes itself down, and no delivery is inside that would need its lock to end: whoever has the
/// lock keeps it.
bool interpreterKeepsItsLock();

/// A thread without the interpreter lock asks to take it. True: the interpreter will wait for leaveInterpreter() before
/// it ends. False: it is ending, and the thread must stay out.
bool enterInterpreter();

/// After the lock was given back.
void leaveInterpreter();
