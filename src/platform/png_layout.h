// SPDX-License-Identifier: MIT
#pragma once

#include "platform/png_file.h"

namespace platform {

constexpr int bytesPerPixel(PngPixels pixels) {
    switch (pixels) {
    case PngPixels::Bgr24:
        return 3;
    case PngPixels::Bgra32:
        return 4;
    case PngPixels::Indexed8:
        break;
    }
    return 1;
}

/// Whether a picture of this shape can be made at all: the rules of a GDI+ bitmap over a caller's buffer, and a stride
/// that keeps every row inside the buffer.
constexpr bool isPngLayout(PngPixels pixels, int width, int height, int stride) {
    return width > 0 && height > 0 && stride % 4 == 0 && stride / bytesPerPixel(pixels) >= width;
}

} // namespace platform
