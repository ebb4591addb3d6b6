// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "fitting/pixel.h"

// The few border pixels nearest to a place, found without sorting the border.
//
// The fit takes one of the five nearest pixels at random, once for every anchor and once for every long gap. Sorting
// the list each time costs n log n for five values. Here the pixels are filed once, in time proportional to their
// number, in square cells of about 32 pixels a side, and a search goes round the target's cell in growing squares until
// five are found that no cell further out can beat. A border is a line: a cell holds some 60 pixels of it, so a search
// looks at a few hundred pixels however long the border is, plus the empty cells on the way when the target lies far
// from it.
//
// Rejected: a k-d tree, which costs more to build than a hundred searches save; walking outwards over the bit image,
// which is slow exactly for the far targets; partial selection (nth_element), which is still linear for every anchor.
//
// Pixels at equal distances come in the order of the list. The list has been shuffled, so each of them is as likely to
// be among the five as any other, and the results have exactly the distribution of a full sort: the tests hold this
// against one, pixel by pixel.

namespace fitting {

/// How many of the nearest pixels a place is chosen from.
inline constexpr std::size_t kCandidates = 5;

class NearestPixels {
  public:
    /// Keeps a copy of the pixels. At most 2^31 - 1 of them.
    explicit NearestPixels(std::span<const Pixel> list);

    /// Places in the list of the nearest pixels among the first `limit`, nearest first; fewer than five only when there
    /// are.
    std::span<const std::uint32_t> find(const Pixel &target, std::size_t limit);

  private:
    struct Entry {
        Pixel pixel;
        std::uint32_t place = 0;
    };
    struct Candidate {
        double distance = 0;
        std::uint32_t place = 0;
    };

    std::size_t cellIndex(int column, int row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) + static_cast<std::size_t>(column);
    }
    int clampedColumn(std::int32_t x) const;
    int clampedRow(std::int32_t y) const;
    /// Looks at the cells of one row from `first` to `last`, as far as they exist.
    void lookAt(const Pixel &target, std::size_t limit, int row, int first, int last);
    /// No pixel in the cells `ring` or more away from (column, row) is nearer than this.
    double leastDistance(const Pixel &target, int column, int row, int ring) const;

    std::int32_t m_left = 0;
    std::int32_t m_top = 0;
    int m_shift = 5; ///< a cell is 2^m_shift pixels a side
    int m_columns = 0;
    int m_rows = 0;
    std::vector<std::uint32_t> m_starts; ///< of each cell's entries, and one more
    std::vector<Entry> m_entries;

    std::array<Candidate, kCandidates> m_candidates; ///< of the search under way
    std::size_t m_found = 0;
    std::array<std::uint32_t, kCandidates> m_result{};
};

} // namespace fitting
