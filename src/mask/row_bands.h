// SPDX-License-Identifier: MIT
#pragma once

// A figure with very many crossings is swept in bands of rows, so that a table's memory stays bounded.

#include <cstddef>
#include <cstdint>

#include "mask/flatten.h"
#include "mask/row_range.h"

namespace Quill {

/// What a table holds at most: crossings, and one more for each row. A figure with more edges than that gets a table as
/// large as its edges need anyway.
inline constexpr std::size_t kMostCrossings = std::size_t{1} << 21;

/// The end of the first band of the rows of a closed polyline: as many rows as fit a table, and at least one. Any two
/// neighbouring bands together exceed a table, so there are few of them: the edges that all bands visit are in
/// proportion to the edges, the crossings and the rows of the figure, whatever its shape.
std::int32_t bandEnd(const VertexBuffer &polyline, RowRange rows);

} // namespace Quill
