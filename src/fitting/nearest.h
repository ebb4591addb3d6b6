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
// the list each time costs n log n for five values. Here the pixels are put along a space-filling curve once and packed
// into a tree of boxes: sixteen pixels that follow one another make a box, four boxes a larger one, up to the one
// around everything. A search goes down into the nearest box first and leaves out those that hold nothing nearer than
// what it has. It looks at some hundred boxes and pixels however long the border is, how far from it the target lies,
// and how unevenly the pixels are spread.
//
// The curve is the Z of bit-interleaved coordinates, taken from a grid with about as many cells as there are pixels:
// filing the pixels in it takes time in proportion to their number. Only within cells that hold very many (a picture
// with one pixel at its other end) they are sorted.
//
// Rejected: the grid alone, whose empty cells have to be walked over from a far target, and whose full ones hold a
// whole picture when one pixel lies far off; a k-d tree, which costs several times as much to build; walking outwards
// over the bit image, which is slow exactly for the far targets; partial selection (nth_element), which is still linear
// for every anchor.
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

    /// Boxes and pixels that all searches so far have looked at.
    std::uint64_t visited() const { return m_visited; }

  private:
    struct Entry {
        Pixel pixel;
        std::uint32_t place = 0;
    };
    /// Around some pixels, bounds included, and the lowest of their places.
    struct Box {
        std::int32_t left, top, right, bottom;
        std::uint32_t leastPlace;
    };
    struct Candidate {
        double distance = 0;
        std::uint32_t place = 0;

        friend bool isBefore(const Candidate &a, const Candidate &b) {
            return a.distance != b.distance ? a.distance < b.distance : a.place < b.place;
        }
    };
    struct Search {
        Pixel target;
        std::size_t limit;
    };

    void file(std::span<const Pixel> list);
    void pack();
    void look(const Search &search, std::size_t level, std::size_t index);
    void lookAtPixels(const Search &search, std::size_t box);
    void consider(const Candidate &candidate);
    bool canImprove(const Candidate &best, std::size_t limit) const {
        return best.place < limit && (m_found < kCandidates || isBefore(best, m_candidates.back()));
    }

    std::vector<Entry> m_entries;
    std::vector<std::vector<Box>> m_levels; ///< from the boxes around pixels up to the one around everything

    std::array<Candidate, kCandidates> m_candidates; ///< of the search under way
    std::size_t m_found = 0;
    std::array<std::uint32_t, kCandidates> m_result{};
    std::uint64_t m_visited = 0;
};

} // namespace fitting
