// SPDX-License-Identifier: MIT
#include "mask/row_bands.h"

#include <algorithm>
#include <array>
#include <cstdlib>

// The crossings of a range of rows are counted in 256 shares of it, in one pass over the edges: an edge adds to the
// shares that it starts and ends in, and counts as passing those between. The share in which the table gets full is
// divided in the same way until it is one row: four passes at most.

namespace Quill {
namespace {

constexpr std::int64_t kShares = 256;

class CrossingCount {
  public:
    CrossingCount(const VertexBuffer &polyline, RowRange rows)
        : m_rows(rows), m_shareRows((std::int64_t{rows.end} - rows.first + kShares - 1) / kShares) {
        for (std::size_t i = 1; i < polyline.size(); ++i)
            add(rowAtOrBelow(polyline[i - 1].y), rowAtOrBelow(polyline[i].y));
    }

    /// Takes whole shares from the budget, from the first on, and returns the rows of the one that exceeds it.
    RowRange firstBeyond(std::size_t &budget) const {
        std::int64_t passing = 0;
        for (std::int64_t share = 0; share < kShares; ++share) {
            const auto at = static_cast<std::size_t>(share);
            passing += m_passing[at];
            const RowRange rows = rowsOf(share);
            const auto cost =
                static_cast<std::size_t>(m_ends[at] + (passing + 1) * (std::int64_t{rows.end} - rows.first));
            if (cost > budget)
                return rows;
            budget -= cost;
        }
        return {m_rows.end, m_rows.end};
    }

  private:
    RowRange rowsOf(std::int64_t share) const {
        const auto row = [this](std::int64_t number) {
            return static_cast<std::int32_t>(std::min<std::int64_t>(m_rows.first + number * m_shareRows, m_rows.end));
        };
        return {row(share), row(share + 1)};
    }

    void add(std::int32_t from, std::int32_t to) {
        const std::int64_t low = std::max(std::min(from, to), m_rows.first) - std::int64_t{m_rows.first};
        const std::int64_t high = std::min(std::max(from, to), m_rows.end) - std::int64_t{m_rows.first};
        if (low >= high)
            return;
        const std::int64_t first = low / m_shareRows;
        const std::int64_t last = (high - 1) / m_shareRows;
        if (first == last) {
            m_ends[static_cast<std::size_t>(first)] += high - low;
            return;
        }
        m_ends[static_cast<std::size_t>(first)] += (first + 1) * m_shareRows - low;
        m_ends[static_cast<std::size_t>(last)] += high - last * m_shareRows;
        ++m_passing[static_cast<std::size_t>(first + 1)];
        --m_passing[static_cast<std::size_t>(last)];
    }

    RowRange m_rows;
    std::int64_t m_shareRows;
    std::array<std::int64_t, kShares> m_ends{};    ///< crossings of edges that start or end in the share
    std::array<std::int64_t, kShares> m_passing{}; ///< how many more edges pass the whole share than the one before
};

/// No fewer crossings than there are: an edge has one a row of its height, and one more where it starts. A loop that
/// the compiler turns into vector instructions; counting row by row takes ten times as long.
std::size_t mostCrossings(const VertexBuffer &polyline) {
    std::uint64_t travelled = 0;
    for (std::size_t i = 1; i < polyline.size(); ++i)
        travelled += static_cast<std::uint32_t>(std::abs(polyline[i].y - polyline[i - 1].y));
    return static_cast<std::size_t>(travelled / kUnitsPerPixel) + polyline.size();
}

} // namespace

std::int32_t bandEnd(const VertexBuffer &polyline, RowRange rows) {
    const auto count = static_cast<std::size_t>(rows.end - rows.first);
    std::size_t budget = std::max(kMostCrossings, polyline.size());
    if (count <= budget / (polyline.size() + 1) || count + mostCrossings(polyline) <= budget)
        return rows.end;
    RowRange open = rows;
    for (;;) {
        open = CrossingCount(polyline, open).firstBeyond(budget);
        if (open.end - open.first <= 1)
            return std::max(open.first, rows.first + 1);
    }
}

} // namespace Quill
