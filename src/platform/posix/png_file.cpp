// SPDX-License-Identifier: MIT
#include "platform/png_file.h"

#include <algorithm>

#include <png.h>

#include "platform/halftone_palette.h"
#include "platform/png_layout.h"
#include "platform/posix/temporary_file.h"

// libpng's simplified interface takes all three layouts as they are and reports errors by result: its classic interface
// reports them by longjmp, which skips destructors.

namespace platform {
namespace {

png_uint_32 formatOf(PngPixels pixels) {
    switch (pixels) {
    case PngPixels::Bgr24:
        return PNG_FORMAT_BGR;
    case PngPixels::Bgra32:
        return PNG_FORMAT_BGRA;
    case PngPixels::Indexed8:
        break;
    }
    return PNG_FORMAT_BGRA_COLORMAP;
}

/// The palette as bytes blue, green, red, alpha.
std::array<std::uint8_t, 1024> paletteBytes() {
    std::array<std::uint8_t, 1024> bytes{};
    auto next = bytes.begin();
    for (const std::uint32_t colour : halftonePalette())
        for (const int shift : {0, 8, 16, 24})
            *next++ = static_cast<std::uint8_t>(colour >> shift);
    return bytes;
}

} // namespace

bool writePng(const char *path, PngPixels pixels, int width, int height, int stride, const std::uint8_t *data) {
    if (!path || !data || !isPngLayout(pixels, width, height, stride))
        return false;
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = formatOf(pixels);
    image.colormap_entries = pixels == PngPixels::Indexed8 ? 256 : 0;
    const std::array<std::uint8_t, 1024> palette = paletteBytes();
    TemporaryFile file(path);
    return file.stream() && png_image_write_to_stdio(&image, file.stream(), 0, data, stride, palette.data()) &&
           file.commit();
}

} // namespace platform
