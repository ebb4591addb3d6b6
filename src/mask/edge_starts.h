// SPDX-License-Identifier: MIT
#pragma once

// What stepping along an edge starts from, for all edges of a polyline at once: independent arithmetic that fills the
// processor's pipelines, ahead of the stores, whose number differs from edge to edge.
//
// Row y (sampled at exactly y, no half-pixel offset) is crossed at c = x0 + (16 y - y0) dx / dy units, and the first
// pixel inside is column ceil(c / 16). An edge that is short enough gets 32.32 fixed-point numbers: a value at its
// first row, in order of travel, and a step to be added from row to row, such that the column is the integer part of
// the value. c / 16 is a multiple of 1 / (16 |dy|), so adding 1 - 1 / (32 |dy|) before taking the floor gives the
// ceiling and leaves 1 / (32 |dy|) of room for error on either side. With |x| <= 2^22 units and |dy| <= 2^15 units
// (2048 rows) that is 2^12 of 2^-32 pixel. The rounded step errs by half of one a row, 2^10 in all; double precision in
// the value by less than 2^6.

#include <cstdint>

#include "mask/flatten.h"
#include "mask/pod_buffer.h"
#include "mask/row_range.h"

namespace Quill {

/// Largest |x| and |dy| of an edge, units, for which value and step are exact.
inline constexpr std::int32_t kSteppedX = 1 << 22;
inline constexpr std::int32_t kSteppedHeight = 1 << 15;

/// Edges that one round of the computation takes together.
inline constexpr std::size_t kEdgesAtOnce = 4;

struct EdgeStarts {
    PodBuffer<std::int32_t> rows;    ///< of each vertex: the first row at or below it, within the range
    PodBuffer<std::uint64_t> values; ///< of each edge, from vertex i to i + 1
    PodBuffer<std::uint64_t> steps;
};

/// Replaces `starts` by those of the edges between `count` vertices. kEdgesAtOnce vertices more must be readable.
void computeEdgeStarts(const FixedPoint *vertices, std::size_t count, RowRange rows, EdgeStarts &starts);

/// The same without vector instructions, whatever the processor.
void computeEdgeStartsPlainly(const FixedPoint *vertices, std::size_t count, RowRange rows, EdgeStarts &starts);

} // namespace Quill
