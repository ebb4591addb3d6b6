// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>

namespace hostkit {

/// A picture of 8-bit blue, green, red, alpha. Video frames leave alpha at 255 and nobody reads it.
///
/// Rows start on 64-byte boundaries and are padded, because the scaler's vector code writes whole vectors.
class Image {
  public:
    Image() = default;
    /// Black. Sizes in pixels; throws std::invalid_argument unless both are 1 to 32767.
    Image(int width, int height);
    Image(const Image &other);
    Image &operator=(const Image &other);
    Image(Image &&) noexcept = default;
    Image &operator=(Image &&) noexcept = default;
    ~Image() = default;

    int width() const { return width_; }
    int height() const { return height_; }
    /// Bytes from one row to the next.
    int stride() const { return stride_; }
    bool empty() const { return width_ == 0; }
    std::uint8_t *row(int y) { return pixels_.get() + static_cast<std::size_t>(y) * static_cast<std::size_t>(stride_); }
    const std::uint8_t *row(int y) const {
        return pixels_.get() + static_cast<std::size_t>(y) * static_cast<std::size_t>(stride_);
    }

    /// Gives the image a size; the contents are black when it changes and stay when it does not.
    void resize(int width, int height);
    void fill(std::uint8_t blue, std::uint8_t green, std::uint8_t red);
    /// Copies `source` to (x, y); what falls outside is cut off.
    void paste(const Image &source, int x, int y);

    /// One pixel as 0xAARRGGBB; throws std::invalid_argument outside of the image.
    std::uint32_t pixel(int x, int y) const;
    /// Rows top to bottom without padding.
    std::string bytes() const;

  private:
    struct Release {
        void operator()(std::uint8_t *pixels) const { ::operator delete(pixels, kAlignment); }
    };
    static constexpr std::align_val_t kAlignment{64};

    std::size_t byteCount() const;

    int width_ = 0;
    int height_ = 0;
    int stride_ = 0;
    std::unique_ptr<std::uint8_t, Release> pixels_;
};

} // namespace hostkit
