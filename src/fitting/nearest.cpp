// SPDX-License-Identifier: MIT
#include "fitting/nearest.h"

#include <algorithm>
#include <limits>

namespace fitting {

NearestPixels::NearestPixels(std::span<const Pixel> list) {
    if (list.empty())
        return;
    const auto across = std::ranges::minmax(list, {}, &Pixel::x);
    const auto down = std::ranges::minmax(list, {}, &Pixel::y);
    m_left = across.min.x;
    m_top = down.min.y;
    const std::int32_t width = across.max.x - m_left;
    const std::int32_t height = down.max.y - m_top;
    const auto sizeIn = [this](std::int32_t extent) { return (extent >> m_shift) + 1; };
    // Few pixels in a wide space get larger cells: there are never more cells than pixels, give or take.
    const auto cells = [&] { return std::int64_t{sizeIn(width)} * sizeIn(height); };
    while (cells() > static_cast<std::int64_t>(list.size()) + 64)
        ++m_shift;
    m_columns = sizeIn(width);
    m_rows = sizeIn(height);

    m_starts.resize(static_cast<std::size_t>(cells()) + 1);
    const auto cellOf = [this](const Pixel &pixel) { return cellIndex(clampedColumn(pixel.x), clampedRow(pixel.y)); };
    for (const Pixel &pixel : list)
        ++m_starts[cellOf(pixel) + 1];
    for (std::size_t cell = 1; cell < m_starts.size(); ++cell)
        m_starts[cell] += m_starts[cell - 1];
    m_entries.resize(list.size());
    std::vector<std::uint32_t> next(m_starts.begin(), m_starts.end() - 1);
    for (std::size_t place = 0; place < list.size(); ++place)
        m_entries[next[cellOf(list[place])]++] = {list[place], static_cast<std::uint32_t>(place)};
}

int NearestPixels::clampedColumn(std::int32_t x) const {
    return static_cast<int>(std::clamp<std::int64_t>((std::int64_t{x} - m_left) >> m_shift, 0, m_columns - 1));
}

int NearestPixels::clampedRow(std::int32_t y) const {
    return static_cast<int>(std::clamp<std::int64_t>((std::int64_t{y} - m_top) >> m_shift, 0, m_rows - 1));
}

void NearestPixels::lookAt(const Pixel &target, std::size_t limit, int row, int first, int last) {
    if (row < 0 || row >= m_rows)
        return;
    first = std::max(first, 0);
    last = std::min(last, m_columns - 1);
    if (first > last)
        return;
    // The cells of a row lie behind one another.
    for (std::uint32_t at = m_starts[cellIndex(first, row)]; at < m_starts[cellIndex(last, row) + 1]; ++at) {
        const Entry &entry = m_entries[at];
        const Candidate candidate = {squaredDistance(target, entry.pixel), entry.place};
        const auto isBefore = [](const Candidate &a, const Candidate &b) {
            return a.distance != b.distance ? a.distance < b.distance : a.place < b.place;
        };
        if (entry.place >= limit || (m_found == kCandidates && !isBefore(candidate, m_candidates.back())))
            continue;
        std::size_t slot = m_found < kCandidates ? m_found++ : kCandidates - 1;
        for (; slot > 0 && isBefore(candidate, m_candidates[slot - 1]); --slot)
            m_candidates[slot] = m_candidates[slot - 1];
        m_candidates[slot] = candidate;
    }
}

double NearestPixels::leastDistance(const Pixel &target, int column, int row, int ring) const {
    const double side = static_cast<double>(std::int64_t{1} << m_shift);
    // How far the target is from the pixels of the cells first..last of one axis.
    const auto gap = [side](double position, double origin, int first, int last) {
        return std::max({0.0, origin + first * side - position, position - (origin + (last + 1) * side - 1)});
    };
    const auto gapX = [&](int first, int last) { return gap(target.x, m_left, first, last); };
    const auto gapY = [&](int first, int last) { return gap(target.y, m_top, first, last); };
    const double anyX = gapX(0, m_columns - 1);
    const double anyY = gapY(0, m_rows - 1);
    double least = std::numeric_limits<double>::infinity();
    const auto consider = [&least](double dx, double dy) { least = std::min(least, dx * dx + dy * dy); };
    if (column + ring < m_columns)
        consider(gapX(column + ring, m_columns - 1), anyY);
    if (column - ring >= 0)
        consider(gapX(0, column - ring), anyY);
    if (row + ring < m_rows)
        consider(anyX, gapY(row + ring, m_rows - 1));
    if (row - ring >= 0)
        consider(anyX, gapY(0, row - ring));
    return least;
}

std::span<const std::uint32_t> NearestPixels::find(const Pixel &target, std::size_t limit) {
    m_found = 0;
    if (m_entries.empty())
        return {};
    const int column = clampedColumn(target.x);
    const int row = clampedRow(target.y);
    for (int ring = 0;; ++ring) {
        const double least = leastDistance(target, column, row, ring);
        // Infinity: no cell is that far away. At an equal distance an earlier place may still wait out there.
        if (least == std::numeric_limits<double>::infinity() ||
            (m_found == kCandidates && least > m_candidates.back().distance))
            break;
        lookAt(target, limit, row - ring, column - ring, column + ring);
        for (int inner = row - ring + 1; inner < row + ring; ++inner) {
            lookAt(target, limit, inner, column - ring, column - ring);
            lookAt(target, limit, inner, column + ring, column + ring);
        }
        if (ring > 0)
            lookAt(target, limit, row + ring, column - ring, column + ring);
    }
    for (std::size_t index = 0; index < m_found; ++index)
        m_result[index] = m_candidates[index].place;
    return {m_result.data(), m_found};
}

} // namespace fitting
