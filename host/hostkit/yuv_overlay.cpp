// SPDX-License-Identifier: MIT
//
// The overlay on the planes of a video frame. Its mixing of codes is the same in R'G'B' and in Y'CbCr, because the
// matrix between them is linear.
#include "hostkit/yuv_overlay.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace hostkit {
namespace {

template <typename Sample>
class Painter {
  public:
    explicit Painter(const Planes &planes)
        : planes_(planes), scale_(planes.depth, planes.coding.fullRange), kr_(static_cast<float>(planes.coding.kr)),
          kb_(static_cast<float>(planes.coding.kb)) {}

    /// The rows that share a row of colour samples, `overlay` being the first of theirs.
    void run(const BYTE *overlay, std::ptrdiff_t pitch, int chromaRow) {
        const int firstRow = chromaRow << planes_.shiftY;
        const int rows = std::min(1 << planes_.shiftY, planes_.height - firstRow);
        constexpr int kStep = 16;
        for (int x = 0; x < planes_.width; x += kStep) {
            const int count = std::min(kStep, planes_.width - x);
            bool isBlank = true;
            for (int i = 0; i < rows; ++i)
                isBlank = isBlank && isClear(overlay + i * pitch + std::ptrdiff_t{x} * 4, count);
            if (isBlank)
                continue;
            for (int column = x; column < x + count; column += 1 << planes_.shiftX)
                paint(overlay, pitch, column, firstRow, rows);
        }
    }

  private:
    static bool isClear(const BYTE *pixels, int count) {
        std::uint64_t any = 0;
        for (int i = 0; i + 1 < count; i += 2) {
            std::uint64_t pair = 0;
            std::memcpy(&pair, pixels + std::ptrdiff_t{i} * 4, sizeof pair);
            any |= pair;
        }
        if (count % 2 != 0)
            any |= pixels[(count - 1) * 4 + 3];
        return any == 0;
    }

    Sample &sample(int plane, int x, int y) const {
        return reinterpret_cast<Sample *>(planes_.data[plane] + y * planes_.stride[plane])[x];
    }

    /// The pixels of one colour sample.
    void paint(const BYTE *overlay, std::ptrdiff_t pitch, int left, int top, int rows) {
        const int columns = std::min(1 << planes_.shiftX, planes_.width - left);
        float share = 0, cb = 0, cr = 0;
        for (int row = 0; row < rows; ++row)
            for (int column = 0; column < columns; ++column) {
                const BYTE *const pixel = overlay + row * pitch + std::ptrdiff_t{left + column} * 4;
                const float alpha = pixel[3] / 255.0F;
                if (pixel[3] == 0)
                    continue;
                const float blue = pixel[0] / 255.0F, green = pixel[1] / 255.0F, red = pixel[2] / 255.0F;
                const float luma = kr_ * red + (1 - kr_ - kb_) * green + kb_ * blue;
                share += alpha;
                cb += alpha * (blue - luma) / (2 * (1 - kb_));
                cr += alpha * (red - luma) / (2 * (1 - kr_));
                Sample &under = sample(0, left + column, top + row);
                under = static_cast<Sample>(
                    scale_.code(((under - scale_.lumaOffset) / scale_.lumaScale) * (1 - alpha) + alpha * luma,
                                scale_.lumaScale, scale_.lumaOffset));
            }
        if (share == 0)
            return;
        const auto pixels = static_cast<float>(rows * columns);
        const auto mix = [&](int plane, float over) {
            Sample &under = sample(plane, left >> planes_.shiftX, top >> planes_.shiftY);
            const float value = (under - scale_.chromaOffset) / scale_.chromaScale;
            under = static_cast<Sample>(
                scale_.code(value * (1 - share / pixels) + over / pixels, scale_.chromaScale, scale_.chromaOffset));
        };
        mix(1, cb);
        mix(2, cr);
    }

    const Planes &planes_;
    const CodeScale scale_;
    const float kr_, kb_;
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
