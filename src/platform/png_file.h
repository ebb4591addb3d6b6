// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace platform {

/// Pixel layouts that the diagnostic pictures use. Rows run top to bottom.
enum class PngPixels {
    Bgr24,    ///< three bytes a pixel: blue, green, red
    Bgra32,   ///< four bytes a pixel: blue, green, red, straight alpha
    Indexed8, ///< one byte a pixel into the default halftone palette: 0 opaque black, 255 opaque white
};

/// Writes a PNG file (GDI+'s encoder on Windows, libpng elsewhere).
///
/// `stride` is in bytes, a multiple of 4 and at least one row long; `path` is in the platform's multibyte code page.
/// False when a size does not fit these rules or the file cannot be written; a file that stood there before then stays
/// as it was, and no part of a picture is left behind.
bool writePng(const char *path, PngPixels pixels, int width, int height, int stride, const std::uint8_t *data);

} // namespace platform
