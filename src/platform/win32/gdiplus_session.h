// SPDX-License-Identifier: MIT
#pragma once

// The one place that includes GDI+ and starts it. The flat functions are reached as Gdiplus::DllExports::Gdip...

#include "platform/win_types.h"

// <gdiplus.h> leans on these: property identifiers of <objidl.h>, and min and max, which NOMINMAX keeps from being
// macros.
#include <objidl.h>

#include <algorithm>

namespace Gdiplus {
using std::max;
using std::min;
} // namespace Gdiplus

#include <gdiplus.h>

#include "platform/unique_handle.h"

namespace platform {

/// Starts GDI+ at its first use in the process; false when the system refuses, and the next call tries again.
///
/// Never call it from DllMain or a static constructor: GDI+ makes a thread while it starts, and that thread would wait
/// for the loader lock. It is never shut down: the system does that when the process ends, and objects of ours may be
/// released after any point that we could choose.
bool startGdiplus();

inline void disposeImage(Gdiplus::GpBitmap *bitmap) {
    Gdiplus::DllExports::GdipDisposeImage(bitmap);
}
using GdiplusBitmap = UniqueHandle<Gdiplus::GpBitmap *, &disposeImage>;

} // namespace platform
