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

struct MarkWindow;

/// A small picture around a middle pixel, drawn once and laid down many times.
class Stamp {
  public:
    /// Layers from the outermost inwards, each laid over the one before. Throws std::bad_alloc.
    Stamp(MarkShape shape, std::span<const MarkLayer> layers);

    /// Lays the picture over the surface, its middle pixel at (x, y), clipped.
    void paint(Surface &surface, std::int32_t x, std::int32_t y) const;

  private:
    /// Pixels that are laid down at once.
    static constexpr int kGroup = 4;

    int side() const { return 2 * m_radius + 1; }
    void paintWhole(Surface &surface, int left, int top) const;
    void paintPart(Surface &surface, const MarkWindow &window, int left, int top) const;

    int m_radius = 0;            ///< pixels to either side of the middle one
    int m_groups = 0;            ///< in a row
    std::vector<Pixel> m_pixels; ///< transparent behind a row's end
    std::vector<char> m_hides;   ///< whether a group hides whatever is below
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
