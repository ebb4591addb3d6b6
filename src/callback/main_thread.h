// SPDX-License-Identifier: MIT
#pragma once

/// Whether the main thread has left its script: it waits for the other threads, runs the exit functions, or is further
/// on the interpreter's way to its end. Takes the interpreter lock; false when that is not to be had.
bool mainThreadHasLeft();
