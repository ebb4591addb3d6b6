// SPDX-License-Identifier: MIT
#include "canvas/canvas_component.h"
#include "platform/com.h"

// Linked into a program or module, the component offers itself as the class that the overlay object creates.

namespace canvas {
namespace {

[[maybe_unused]] const platform::ClassFactory g_replaced =
    platform::registerClassFactory(CLSID_OverlayCanvas, createCanvasComponent);

} // namespace
} // namespace canvas
