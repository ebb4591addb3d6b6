// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "canvas/surface.h"

namespace canvas {

enum class MarkShape { Square, Round };

/// One layer of a mark: its full width in pixels, and its colour.
struct MarkLayer {
    std::uint32_t size;
    Pixel color;

    friend bool operator==(const MarkLayer &, const MarkLayer &) = default;
};

/// A small picture around a middle pixel, drawn once and laid down many times.
class Stamp {
  public:
    /// Layers from the outermost inwards, each laid over the one before. Throws std::bad_alloc.
    Stamp(MarkShape shape, std::span<const MarkLayer> layers);

    /// Lays the picture over the surface, its middle pixel at (x, y), clipped.
    void paint(Surface &surface, std::int32_t x, std::int32_t y) const;

  private:
    /// Columns [first, end) of a row that hide what is below.
    struct Opaque {
        int first;
        int end;
    };

    int m_radius = 0; ///< pixels to either side of the middle one
    std::vector<Pixel> m_pixels;
    std::vector<Opaque> m_opaque;
};

/// Lays marks over surfaces and keeps the stamps of the latest looks.
class MarkPainter {
  public:
    /// The stamp of a look; valid until the next call. Layers of at most kLargestStamp. Throws std::bad_alloc.
    const Stamp &stamp(MarkShape shape, std::span<const MarkLayer> layers);

    /// Lays one mark of one colour over the surface, centred on a pixel: of any size, in time proportional to what is
    /// visible. Throws std::bad_alloc.
    void paint(Surface &surface, MarkShape shape, std::int32_t x, std::int32_t y, const MarkLayer &layer);

    static constexpr std::uint32_t kLargestStamp = 64;

  private:
    struct Entry {
        MarkShape shape;
        std::vector<MarkLayer> layers;
        Stamp stamp;
    };
    static constexpr std::size_t kMostEntries = 32;

    std::vector<Entry> m_entries;
};

} // namespace canvas
