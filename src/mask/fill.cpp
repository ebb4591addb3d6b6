// SPDX-License-Identifier: MIT
#include "mask/fill.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace Quill {
namespace {

constexpr std::array<std::uint8_t, kBytesPerPixel> pixelBytes(std::uint32_t argb) {
    const std::uint32_t key = pixelKey(argb);
    return {static_cast<std::uint8_t>(key >> 16), static_cast<std::uint8_t>(key >> 8), static_cast<std::uint8_t>(key)};
}

constexpr std::size_t kPatternPixels = 256;

constexpr auto kFillPattern = [] {
    std::array<std::uint8_t, kPatternPixels * kBytesPerPixel> pattern{};
    constexpr auto bytes = pixelBytes(kFillColour);
    for (std::size_t i = 0; i < pattern.size(); ++i)
        pattern[i] = bytes[i % kBytesPerPixel];
    return pattern;
}();

/// Writes the fill colour on a cleared surface.
class SurfaceSink {
  public:
    class Cursor {
      public:
        explicit Cursor(const MaskSurface &surface) : m_surface(surface) {}

        void beginRow(std::int32_t row) {
            m_row = m_surface.bits + static_cast<std::ptrdiff_t>(row) * m_surface.stride;
        }
        void span(std::int32_t first, std::int32_t end) {
            std::uint8_t *out = m_row + static_cast<std::ptrdiff_t>(first) * kBytesPerPixel;
            auto left = static_cast<std::size_t>(end - first) * kBytesPerPixel;
            for (; left > kFillPattern.size(); left -= kFillPattern.size(), out += kFillPattern.size())
                std::memcpy(out, kFillPattern.data(), kFillPattern.size());
            std::memcpy(out, kFillPattern.data(), left);
        }
        void spanOrNone(std::int32_t first, std::int32_t end) { span(first, end); }
        void endRow() {}

      private:
        MaskSurface m_surface;
        std::uint8_t *m_row = nullptr;
    };

    explicit SurfaceSink(const MaskSurface &surface) : m_surface(surface) {}

    void emptyRows(RowRange) {}
    Cursor open(std::size_t, std::size_t) { return Cursor(m_surface); }
    void close(const Cursor &) {}

  private:
    const MaskSurface &m_surface;
};

/// The bytes between a row's last pixel and the next row are nobody's pixels and stay as they are.
void clearSurface(const MaskSurface &surface) {
    static_assert(kBackgroundKey == 0, "a background pixel is three zero bytes");
    for (int row = 0; row < surface.height; ++row)
        std::memset(surface.bits + static_cast<std::ptrdiff_t>(row) * surface.stride, 0,
                    static_cast<std::size_t>(surface.width) * kBytesPerPixel);
}

std::vector<platform::PixelPoint> pixelPoints(const MPoint *points, int count) {
    std::vector<platform::PixelPoint> pixels;
    pixels.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        pixels.push_back({points[i].x, points[i].y});
    return pixels;
}

/// Columns are 16 bits wide where they are stored, so a wider surface is filled in upright strips. Beyond the largest
/// coordinate there is nothing to fill.
void fillPolyline(const MaskSurface &surface, RasterScratch &scratch) {
    clearSurface(surface);
    MaskSurface strip = surface;
    for (int left = 0; left < surface.width && left <= kMaxPixelCoordinate; left += kMaxColumn) {
        strip.width = std::min(surface.width - left, kMaxColumn);
        SurfaceSink sink(strip);
        sweepPolyline(scratch, strip.width, strip.height, sink);
        strip.bits += static_cast<std::ptrdiff_t>(strip.width) * kBytesPerPixel;
        for (FixedPoint &vertex : scratch.polyline)
            vertex.x -= toFixed(strip.width);
    }
}

} // namespace

bool canDrawOn(const MaskSurface &surface) {
    return surface.bits && surface.width > 0 && surface.height > 0 && surface.stride % 4 == 0 &&
           surface.stride >= std::int64_t{kBytesPerPixel} * surface.width &&
           std::int64_t{surface.stride} * surface.height <= std::numeric_limits<std::int32_t>::max();
}

void fillPolygon(RasterEngine engine, const MaskSurface &surface, const MPoint *points, int count) {
    if (!canDrawOn(surface))
        return;
    if (engine == RasterEngine::Native) {
        // What cannot be drawn is not shown to the platform either: its own limits are not sharp.
        if (isDrawable(points, count))
            platform::nativeFillPolygon(surface, pixelPoints(points, count).data(), count);
        else
            clearSurface(surface);
        return;
    }
    const BorrowedScratch scratch;
    buildPolygon(points, count, scratch->polyline);
    fillPolyline(surface, *scratch);
}

void fillOutline(RasterEngine engine, const MaskSurface &surface, const MPoint *points, int count) {
    if (!canDrawOn(surface))
        return;
    if (engine == RasterEngine::Native) {
        if (isDrawableOutline(points, count))
            platform::nativeFillBeziers(surface, pixelPoints(points, count).data(), count);
        else
            clearSurface(surface);
        return;
    }
    const BorrowedScratch scratch;
    buildOutline(points, count, {surface.width, surface.height}, scratch->polyline);
    fillPolyline(surface, *scratch);
}

} // namespace Quill
