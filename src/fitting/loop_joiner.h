// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "fitting/pixel.h"

// Joins loops of anchors to one order, each by the cheapest pair of bridges: between two neighbours in the order so
// far, entering and leaving the loop at two of its neighbours, so that the four ends add the least length. Of equally
// cheap ones, the first in the order, and then in the loop, counts.
//
// Trying every pair takes time proportional to the product of the anchors on either side, and with thousands of islands
// that is what a fit would spend its time on. So the order is kept in blocks of some hundred neighbours, a loop in
// parts of a few dozen, each with the box around its anchors and its longest distance between neighbours. Two bridges
// from a block to a part are at least as long as the boxes are apart and save at most those two distances: most blocks
// are too far away to hold anything cheaper than what has been found. The neighbours of an order are neighbours in the
// picture, or the boxes would be no use.

namespace fitting {

class LoopJoiner {
  public:
    /// `places` of all anchors by number, which have to outlive the joiner; `order` numbers of some of them, at least
    /// one.
    LoopJoiner(std::span<const Pixel> places, std::span<const std::uint32_t> order);

    /// Adds a loop that is not empty. Past a limit of pairs it is simply appended.
    void join(std::span<const std::uint32_t> loop);

    std::vector<std::uint32_t> order() const;

    /// Pairs of blocks and parts, and pairs of bridges, that were looked at so far.
    std::uint64_t visited() const { return m_visited; }

    /// Pairs of bridges beyond which a loop is appended.
    static constexpr std::size_t kMostBridges = std::size_t{1} << 22;

  private:
    struct Box {
        std::int32_t left, top, right, bottom;

        static Box around(const Pixel &pixel) { return {pixel.x, pixel.y, pixel.x, pixel.y}; }
        void add(const Pixel &pixel);
    };
    /// From an anchor of the order to the next.
    struct Edge {
        std::uint32_t from;
        std::uint32_t to;
        double length;
    };
    struct Block {
        std::vector<Edge> edges;
        Box from;
        Box to;
        double longest;
    };
    /// Entries of a loop: the anchors that a bridge leads to, and those before them that one leads back from.
    struct Part {
        std::size_t first;
        std::size_t end;
        Box box;
        double longest;
    };
    struct Bridge {
        double added;
        std::size_t block;
        std::size_t at;
        std::size_t entry;

        bool isBefore(const Bridge &other) const;
    };

    static double gap(const Box &a, const Box &b);
    double distance(std::uint32_t a, std::uint32_t b) const;
    double leastAdded(const Block &block, const Part &part) const;
    std::vector<Part> partsOf(std::span<const std::uint32_t> loop) const;
    Bridge cheapest(std::span<const std::uint32_t> loop);
    void tryAll(std::span<const std::uint32_t> loop, std::size_t block, const Part &part, Bridge &best);
    void insert(const Bridge &bridge, std::span<const std::uint32_t> loop);
    void measure(Block &block) const;
    void split(std::size_t block);

    std::span<const Pixel> m_places;
    std::vector<Block> m_blocks;
    std::size_t m_size = 0;
    std::uint64_t m_visited = 0;
};

} // namespace fitting
