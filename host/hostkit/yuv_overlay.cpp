// SPDX-License-Identifier: MIT
//
// The overlay on the planes of a video frame. Its mixing of codes is the same in R'G'B' and in Y'CbCr, because the
// matrix between them is linear.
#include "hostkit/yuv_overlay.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "hostkit/float_lanes.h"

namespace hostkit {
namespace {

/// What a pixel of the overlay leaves of the codes below it, and what it adds to them.
struct Ink {
    float keeps = 0, luma = 0, cb = 0, cr = 0;
};

template <typename Sample>
class Painter {
  public:
    explicit Painter(const Planes &planes)
        : planes_(planes), scale_(planes.depth, planes.coding.fullRange), kr_(static_cast<float>(planes.coding.kr)),
          kb_(static_cast<float>(planes.coding.kb)), ink_(makeInk(color_)) {}

    /// The rows that share a row of colour samples, `overlay` being the first of theirs.
    void run(const BYTE *overlay, std::ptrdiff_t pitch, int chromaRow) {
        const int firstRow = chromaRow << planes_.shiftY;
        const int rows = std::min(1 << planes_.shiftY, planes_.height - firstRow);
        for (int x = 0; x < planes_.width; x += kStep, overlay += kStep * 4) {
            const int count = std::min(kStep, planes_.width - x);
            // Most of an overlay is blank, and most of what is not is the inside of the outline.
            if (count == kStep && isUniform(overlay, pitch, rows)) {
                if (overlay[3] != 0)
                    paintUniform(inkOf(overlay), x, firstRow, rows);
                continue;
            }
            for (int i = 0; i < count; i += 1 << planes_.shiftX)
                paint(overlay + std::ptrdiff_t{i} * 4, pitch, x + i, firstRow, rows);
        }
    }

  private:
    /// Pixels that are looked at together.
    static constexpr int kStep = 16;

    static bool isUniform(const BYTE *overlay, std::ptrdiff_t pitch, int rows) {
        std::uint32_t color = 0;
        std::memcpy(&color, overlay, sizeof color);
        std::uint32_t differences = 0;
        for (int row = 0; row < rows; ++row) {
            std::uint32_t pixels[kStep];
            std::memcpy(pixels, overlay + row * pitch, sizeof pixels);
            for (const std::uint32_t pixel : pixels)
                differences |= pixel ^ color;
        }
        return differences == 0;
    }

    Ink makeInk(const BYTE (&pixel)[4]) const {
        const float blue = pixel[0] / 255.0F, green = pixel[1] / 255.0F, red = pixel[2] / 255.0F;
        const float alpha = pixel[3] / 255.0F;
        const float luma = kr_ * red + (1 - kr_ - kb_) * green + kb_ * blue;
        const float cb = (blue - luma) / (2 * (1 - kb_)), cr = (red - luma) / (2 * (1 - kr_));
        return {1 - alpha, alpha * (luma * scale_.lumaScale + scale_.lumaOffset),
                alpha * (cb * scale_.chromaScale + scale_.chromaOffset),
                alpha * (cr * scale_.chromaScale + scale_.chromaOffset)};
    }
    /// Neighbours are often alike.
    const Ink &inkOf(const BYTE *pixel) {
        if (std::memcmp(color_, pixel, sizeof color_) != 0) {
            std::memcpy(color_, pixel, sizeof color_);
            ink_ = makeInk(color_);
        }
        return ink_;
    }

    Sample *samples(int plane, int x, int y) const {
        return reinterpret_cast<Sample *>(planes_.data[plane] + y * planes_.stride[plane]) + x;
    }

    /// A block of one colour, the same to the code as paint() would have it.
    void paintUniform(const Ink &ink, int left, int top, int rows) {
        for (int row = 0; row < rows; ++row)
            mix(samples(0, left, top + row), kStep, ink.keeps, ink.luma);
        const int colors = kStep >> planes_.shiftX;
        mix(samples(1, left >> planes_.shiftX, top >> planes_.shiftY), colors, ink.keeps, ink.cb);
        mix(samples(2, left >> planes_.shiftX, top >> planes_.shiftY), colors, ink.keeps, ink.cr);
    }
    void mix(Sample *codes, int count, float keeps, float adds) const {
        const FloatLanes factor = FloatLanes::all(keeps), summand = FloatLanes::all(adds);
        const FloatLanes zero = FloatLanes::all(0), largest = FloatLanes::all(scale_.largest);
        const FloatLanes half = FloatLanes::all(0.5F);
        for (int i = 0; i < count; i += FloatLanes::kCount) {
            const FloatLanes mixed = FloatLanes::load(codes + i) * factor + summand;
            (lesser(greater(mixed, zero), largest) + half).store(codes + i);
        }
    }

    /// The pixels of one colour sample.
    void paint(const BYTE *overlay, std::ptrdiff_t pitch, int left, int top, int rows) {
        const int columns = std::min(1 << planes_.shiftX, planes_.width - left);
        Ink sum;
        bool isBlank = true;
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < columns; ++column) {
                const BYTE *const pixel = overlay + row * pitch + std::ptrdiff_t{column} * 4;
                if (pixel[3] == 0) {
                    sum.keeps += 1;
                    continue;
                }
                isBlank = false;
                const Ink &ink = inkOf(pixel);
                sum.keeps += ink.keeps;
                sum.cb += ink.cb;
                sum.cr += ink.cr;
                set(*samples(0, left + column, top + row), ink.keeps, ink.luma);
            }
        if (isBlank)
            return;
        const auto pixels = static_cast<float>(rows * columns);
        set(*samples(1, left >> planes_.shiftX, top >> planes_.shiftY), sum.keeps / pixels, sum.cb / pixels);
        set(*samples(2, left >> planes_.shiftX, top >> planes_.shiftY), sum.keeps / pixels, sum.cr / pixels);
    }
    void set(Sample &code, float keeps, float adds) const {
        code = static_cast<Sample>(scale_.code(code, keeps, adds));
    }

    const Planes &planes_;
    const CodeScale scale_;
    const float kr_, kb_;
    BYTE color_[4] = {};
    Ink ink_; ///< that of color_
};

template <typename Sample>
void compositeField(const Planes &planes, const BYTE *overlay, std::ptrdiff_t pitch) {
    Painter<Sample> painter(planes);
    for (int row = 0; row < planes.chromaHeight(); ++row)
        painter.run(overlay + (std::ptrdiff_t{row} << planes.shiftY) * pitch, pitch, row);
}

void compositeAny(const Planes &planes, const BYTE *overlay, std::ptrdiff_t pitch) {
    if (planes.depth > 8)
        compositeField<std::uint16_t>(planes, overlay, pitch);
    else
        compositeField<std::uint8_t>(planes, overlay, pitch);
}

} // namespace

void compositeOverlay(const Planes &planes, const BYTE *overlay, std::size_t pitch) {
    const auto step = static_cast<std::ptrdiff_t>(pitch);
    if (!planes.interlaced)
        return compositeAny(planes, overlay, step);
    for (int parity = 0; parity < 2; ++parity)
        compositeAny(planes.field(parity), overlay + parity * step, 2 * step);
}

} // namespace hostkit
