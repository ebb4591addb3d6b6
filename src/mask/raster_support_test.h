// SPDX-License-Identifier: MIT
#pragma once

// What the rasterizer's tests share: points from tables, rows as text, hashes, and what the log was given.

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "mask/fill.h"
#include "mask/mask_handler.h"

namespace Quill::test {

struct XY {
    int x;
    int y;
};

/// Outline points with types as the layout has them: anchor, control, control, ...
std::vector<MPoint> outline(const std::vector<XY> &points);

/// Vertices in units of whole-pixel points.
VertexBuffer polylineOf(const std::vector<XY> &pixels);

/// The rows that the closed polyline covers, as in "1: 1-3; 2: 0-0 4-5": inclusive columns, rows without runs left out.
std::string filledRows(const VertexBuffer &polyline, int width, int height);

/// The same text for each encoding.
std::string asText(const std::vector<MaskRun> &runs);
std::string rowListAsText(const std::vector<std::uint16_t> &rows);

/// FNV-1a, 32 bits, over the values' little-endian bytes.
class Fnv {
  public:
    template <typename Integer>
    void add(Integer value) {
        for (std::size_t i = 0; i < sizeof value; ++i)
            m_hash =
                (m_hash ^ (static_cast<std::uint32_t>(static_cast<std::uint64_t>(value) >> 8 * i) & 0xFF)) * 0x01000193;
    }
    std::uint32_t value() const { return m_hash; }

  private:
    std::uint32_t m_hash = 0x811c9dc5;
};

std::uint32_t fnvOf(const FixedPoint *begin, const FixedPoint *end);

/// A 24-bit surface with its own memory, filled with 0xAA to begin with.
struct OwnedSurface {
    OwnedSurface(int width, int height);
    std::uint8_t *pixel(int x, int y);
    /// Columns that are neither background nor anything but the fill colour fail the test.
    std::string rows();

    int width;
    int height;
    int stride;
    std::vector<std::uint8_t> bytes;
    std::uint8_t *bits;
};

/// The lines, without the ends the log adds, that were traced while `body` ran with the log switched on.
std::vector<std::string> loggedLines(const std::function<void()> &body);

} // namespace Quill::test
