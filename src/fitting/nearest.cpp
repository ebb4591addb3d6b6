// SPDX-License-Identifier: MIT
#include "fitting/nearest.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace fitting {
namespace {

constexpr std::size_t kPixelsInBox = 16;
constexpr std::size_t kBoxesInBox = 4;
/// Cells with more pixels than this are sorted.
constexpr std::size_t kFullCell = 64;

/// The lower 32 bits with a gap before each.
std::uint64_t spread(std::uint64_t bits) {
    bits = (bits | bits << 16) & 0x0000FFFF0000FFFF;
    bits = (bits | bits << 8) & 0x00FF00FF00FF00FF;
    bits = (bits | bits << 4) & 0x0F0F0F0F0F0F0F0F;
    bits = (bits | bits << 2) & 0x3333333333333333;
    return (bits | bits << 1) & 0x5555555555555555;
}

/// Cells of a grid over all pixels, numbered along the curve: about as many as there are pixels.
class CurveGrid {
  public:
    explicit CurveGrid(std::span<const Pixel> list) {
        const auto across = std::ranges::minmax(list, {}, &Pixel::x);
        const auto down = std::ranges::minmax(list, {}, &Pixel::y);
        m_left = across.min.x;
        m_top = down.min.y;
        const std::uint32_t width = offset(across.max.x, m_left);
        const std::uint32_t height = offset(down.max.y, m_top);
        int columnBits = 0;
        int rowBits = 0;
        for (;; ++m_shift) {
            columnBits = std::bit_width(width >> m_shift);
            rowBits = std::bit_width(height >> m_shift);
            if ((std::uint64_t{1} << (columnBits + rowBits)) <= list.size() + 64)
                break;
        }
        m_common = std::min(columnBits, rowBits);
        m_cells = std::size_t{1} << (columnBits + rowBits);
    }

    std::size_t cells() const { return m_cells; }

    std::size_t cellOf(const Pixel &pixel) const {
        const std::uint64_t column = offset(pixel.x, m_left) >> m_shift;
        const std::uint64_t row = offset(pixel.y, m_top) >> m_shift;
        const std::uint64_t mask = (std::uint64_t{1} << m_common) - 1;
        // The longer axis has bits that the other has no partners for; they come on top.
        const std::uint64_t rest = (column >> m_common) | (row >> m_common);
        return static_cast<std::size_t>(rest << (2 * m_common) | spread(row & mask) << 1 | spread(column & mask));
    }

    /// The order of the curve at its finest.
    bool isBefore(const Pixel &a, const Pixel &b) const {
        const std::uint32_t x = offset(a.x, m_left) ^ offset(b.x, m_left);
        const std::uint32_t y = offset(a.y, m_top) ^ offset(b.y, m_top);
        // The axis with the higher bit that differs decides; rows do when both have it.
        const bool byColumn = y < x && y < (x ^ y);
        return byColumn ? a.x < b.x : a.y < b.y;
    }

  private:
    static std::uint32_t offset(std::int32_t position, std::int32_t origin) {
        return static_cast<std::uint32_t>(position) - static_cast<std::uint32_t>(origin);
    }

    std::int32_t m_left = 0;
    std::int32_t m_top = 0;
    int m_shift = 0; ///< a cell is 2^m_shift pixels a side
    int m_common = 0;
    std::size_t m_cells = 0;
};

} // namespace

NearestPixels::NearestPixels(std::span<const Pixel> list) {
    if (list.empty())
        return;
    file(list);
    pack();
}

void NearestPixels::file(std::span<const Pixel> list) {
    const CurveGrid grid(list);
    std::vector<std::uint32_t> ends(grid.cells() + 1);
    for (const Pixel &pixel : list)
        ++ends[grid.cellOf(pixel) + 1];
    for (std::size_t cell = 1; cell < ends.size(); ++cell)
        ends[cell] += ends[cell - 1];
    // Starts so far; each moves up to its cell's end as the cell fills.
    m_entries.resize(list.size());
    for (std::size_t place = 0; place < list.size(); ++place)
        m_entries[ends[grid.cellOf(list[place])]++] = {list[place], static_cast<std::uint32_t>(place)};
    std::uint32_t start = 0;
    for (std::size_t cell = 0; cell < grid.cells(); ++cell) {
        if (ends[cell] - start > kFullCell)
            std::sort(m_entries.begin() + start, m_entries.begin() + ends[cell],
                      [&grid](const Entry &a, const Entry &b) { return grid.isBefore(a.pixel, b.pixel); });
        start = ends[cell];
    }
}

void NearestPixels::pack() {
    const auto joined = [](Box a, const Box &b) {
        return Box{std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
                   std::max(a.bottom, b.bottom), std::min(a.leastPlace, b.leastPlace)};
    };
    const auto boxOf = [](const Entry &entry) {
        return Box{entry.pixel.x, entry.pixel.y, entry.pixel.x, entry.pixel.y, entry.place};
    };
    std::vector<Box> boxes;
    boxes.reserve(m_entries.size() / kPixelsInBox + 1);
    for (std::size_t at = 0; at < m_entries.size(); ++at) {
        if (at % kPixelsInBox == 0)
            boxes.push_back(boxOf(m_entries[at]));
        else
            boxes.back() = joined(boxes.back(), boxOf(m_entries[at]));
    }
    m_levels.push_back(std::move(boxes));
    while (m_levels.back().size() > 1) {
        std::vector<Box> larger;
        for (std::size_t at = 0; at < m_levels.back().size(); ++at) {
            if (at % kBoxesInBox == 0)
                larger.push_back(m_levels.back()[at]);
            else
                larger.back() = joined(larger.back(), m_levels.back()[at]);
        }
        m_levels.push_back(std::move(larger));
    }
}

void NearestPixels::consider(const Candidate &candidate) {
    std::size_t slot = m_found < kCandidates ? m_found++ : kCandidates - 1;
    for (; slot > 0 && isBefore(candidate, m_candidates[slot - 1]); --slot)
        m_candidates[slot] = m_candidates[slot - 1];
    m_candidates[slot] = candidate;
}

void NearestPixels::lookAtPixels(const Search &search, std::size_t box) {
    const std::size_t first = box * kPixelsInBox;
    const std::size_t end = std::min(first + kPixelsInBox, m_entries.size());
    m_visited += end - first;
    for (std::size_t at = first; at < end; ++at) {
        const Candidate candidate = {squaredDistance(search.target, m_entries[at].pixel), m_entries[at].place};
        if (canImprove(candidate, search.limit))
            consider(candidate);
    }
}

void NearestPixels::look(const Search &search, std::size_t level, std::size_t index) {
    if (level == 0) {
        lookAtPixels(search, index);
        return;
    }
    // The best that each box could hold: the pixel of it that is nearest, at its lowest place.
    std::array<std::pair<Candidate, std::size_t>, kBoxesInBox> order;
    std::size_t count = 0;
    const std::vector<Box> &boxes = m_levels[level - 1];
    const std::size_t end = std::min((index + 1) * kBoxesInBox, boxes.size());
    for (std::size_t at = index * kBoxesInBox; at < end; ++at) {
        const Box &box = boxes[at];
        const Pixel nearest = {std::clamp(search.target.x, box.left, box.right),
                               std::clamp(search.target.y, box.top, box.bottom)};
        const Candidate best = {squaredDistance(search.target, nearest), box.leastPlace};
        std::size_t slot = count++;
        for (; slot > 0 && isBefore(best, order[slot - 1].first); --slot)
            order[slot] = order[slot - 1];
        order[slot] = {best, at};
    }
    m_visited += count;
    for (std::size_t at = 0; at < count; ++at)
        if (canImprove(order[at].first, search.limit))
            look(search, level - 1, order[at].second);
}

std::span<const std::uint32_t> NearestPixels::find(const Pixel &target, std::size_t limit) {
    m_found = 0;
    if (m_entries.empty())
        return {};
    look({target, limit}, m_levels.size() - 1, 0);
    for (std::size_t index = 0; index < m_found; ++index)
        m_result[index] = m_candidates[index].place;
    return {m_result.data(), m_found};
}

} // namespace fitting
