// SPDX-License-Identifier: MIT
#pragma once

// Masks for somebody who only wants masks: an outline of cubic segments in, the runs of the pixels that it covers out.
// See docs/mask.md. No logging, no result codes, no surface, and no allocation once the encoder has seen its largest
// outline.

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "mask/mask_handler.h"

namespace Quill {

/// A closed outline, three points an anchor, built along its way. Coordinates are whole pixels; nothing is drawn of an
/// outline with one beyond 8388607 in magnitude.
class OutlineBuilder {
  public:
    OutlineBuilder(int x, int y);

    OutlineBuilder &lineTo(int x, int y);
    OutlineBuilder &curveTo(int controlX1, int controlY1, int controlX2, int controlY2, int x, int y);

    /// The outline, closed by a straight segment, or by the last segment when that came back to the start.
    std::vector<MPoint> close() const;

  private:
    std::vector<MPoint> m_points;
};

/// Turns outlines into runs, even-odd, without anti-aliasing: a pixel is in when its upper left corner is inside or on
/// a left or upper edge. Holds its working memory: use one for each thread, and keep it.
///
/// Every result stays valid until the next call. Outlines of fewer than three anchors give empty masks.
class MaskEncoder {
  public:
    /// Size in pixels: at most 65535 columns; larger than 2^31 - 1 bytes at three bytes a pixel counts as empty.
    MaskEncoder(int width, int height);
    ~MaskEncoder();
    MaskEncoder(MaskEncoder &&) noexcept;
    MaskEncoder &operator=(MaskEncoder &&) noexcept;

    void resize(int width, int height);
    /// Encodes what is outside instead.
    void invert(bool on);
    /// One byte a pixel, row after row, without padding: pixels whose byte is 1 are out. Null: none are. Not copied.
    void exclude(const std::uint8_t *map);

    /// Column, row and length of each run, rows from the top, columns from the left.
    std::span<const MaskRun> runs(std::span<const MPoint> outline);
    /// For each row a count, then as many values: the first and last column of each run.
    std::span<const std::uint16_t> rowList(std::span<const MPoint> outline);
    /// Runs as fractions: column and length of the width, row of the height.
    std::span<const MaskRunF> fractions(std::span<const MPoint> outline);

  private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace Quill
