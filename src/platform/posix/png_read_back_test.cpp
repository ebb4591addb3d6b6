// SPDX-License-Identifier: MIT
#include "platform/png_read_back_test.h"

#include <png.h>

namespace platform {

DecodedPng readBackPng(const std::string &path) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str()))
        return {};
    image.format = PNG_FORMAT_BGRA; // bytes blue, green, red, alpha: 0xAARRGGBB in a little-endian word
    DecodedPng decoded{static_cast<int>(image.width), static_cast<int>(image.height), {}};
    decoded.pixels.resize(static_cast<std::size_t>(image.width) * image.height);
    if (!png_image_finish_read(&image, nullptr, decoded.pixels.data(), 0, nullptr))
        return {};
    return decoded;
}

} // namespace platform
