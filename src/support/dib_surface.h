// SPDX-License-Identifier: MIT
#pragma once

#include "platform/dib.h"

/// Makes a 32-bit bitmap whose pixel memory the caller may write; a negative height makes it top-down.
///
/// `bitmap` must not be null and is the caller's to delete; `bits` (may be null) receives the pixel memory, which lives
/// as long as the bitmap. FALSE, with one log line, for a zero size, a null `bitmap`, or when the system refuses.
BOOL CreateDIBSection32(UINT width, INT height, HBITMAP *bitmap, void **bits);

/// The same through a chosen drawing system.
BOOL createDibSection32(const platform::DibCalls &calls, UINT width, INT height, HBITMAP *bitmap, void **bits);
