// SPDX-License-Identifier: MIT
#include "hostkit/image.h"

#include <algorithm>
#include <cstring>
#include <stdexcept>

#include "hostkit/error.h"

namespace hostkit {
namespace {

constexpr int kLargestSide = 32767;
constexpr int kRowAlignment = 64;

} // namespace

Image::Image(int width, int height) {
    resize(width, height);
}

Image::Image(const Image &other) {
    *this = other;
}

Image &Image::operator=(const Image &other) {
    if (this == &other)
        return *this;
    if (other.empty())
        return *this = Image();
    resize(other.width_, other.height_);
    std::memcpy(pixels_.get(), other.pixels_.get(), byteCount());
    return *this;
}

std::size_t Image::byteCount() const {
    return static_cast<std::size_t>(stride_) * static_cast<std::size_t>(height_);
}

void Image::resize(int width, int height) {
    if (width < 1 || height < 1 || width > kLargestSide || height > kLargestSide)
        throw std::invalid_argument("an image of " + sizeText(width, height) + " pixels cannot be made");
    if (width == width_ && height == height_)
        return;
    const int stride = (width * 4 + kRowAlignment - 1) / kRowAlignment * kRowAlignment;
    const std::size_t size = static_cast<std::size_t>(stride) * static_cast<std::size_t>(height);
    pixels_.reset(static_cast<std::uint8_t *>(::operator new(size, kAlignment)));
    width_ = width;
    height_ = height;
    stride_ = stride;
    fill(0, 0, 0);
}

void Image::fill(std::uint8_t blue, std::uint8_t green, std::uint8_t red) {
    const std::uint8_t bgra[4] = {blue, green, red, 255};
    for (int y = 0; y < height_; ++y)
        for (int offset = 0; offset < stride_; offset += 4)
            std::memcpy(row(y) + offset, bgra, sizeof bgra);
}

void Image::paste(const Image &source, int x, int y) {
    const int left = std::max(x, 0);
    const int right = std::min(x + source.width_, width_);
    const int bottom = std::min(y + source.height_, height_);
    if (left >= right)
        return;
    for (int line = std::max(y, 0); line < bottom; ++line)
        std::memcpy(row(line) + std::ptrdiff_t{left} * 4, source.row(line - y) + std::ptrdiff_t{left - x} * 4,
                    static_cast<std::size_t>(right - left) * 4);
}

std::uint32_t Image::pixel(int x, int y) const {
    if (x < 0 || y < 0 || x >= width_ || y >= height_)
        throw std::invalid_argument("pixel (" + std::to_string(x) + ", " + std::to_string(y) +
                                    ") lies outside of the image");
    std::uint32_t value = 0;
    std::memcpy(&value, row(y) + std::ptrdiff_t{x} * 4, sizeof value);
    return value;
}

std::string Image::bytes() const {
    std::string all;
    const std::size_t rowBytes = static_cast<std::size_t>(width_) * 4;
    all.reserve(rowBytes * static_cast<std::size_t>(height_));
    for (int y = 0; y < height_; ++y)
        all.append(row(y), row(y) + rowBytes);
    return all;
}

} // namespace hostkit
