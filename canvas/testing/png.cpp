// SPDX-License-Identifier: MIT
#include "canvas/testing/png.h"

#include <png.h>

namespace canvas::testing {
namespace {

png_image describe(const Picture &picture) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_BGRA;
    return image;
}

} // namespace

bool writePicture(const std::string &path, const Picture &picture) {
    png_image image = describe(picture);
    return png_image_write_to_file(&image, path.c_str(), 0, picture.pixels.data(), 0, nullptr) != 0;
}

Picture readPicture(const std::string &path) {
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str()))
        return {};
    image.format = PNG_FORMAT_BGRA;
    Picture picture;
    picture.width = static_cast<int>(image.width);
    picture.height = static_cast<int>(image.height);
    picture.pixels.resize(static_cast<std::size_t>(image.width) * image.height);
    if (!png_image_finish_read(&image, nullptr, picture.pixels.data(), 0, nullptr))
        return {};
    return picture;
}

} // namespace canvas::testing
