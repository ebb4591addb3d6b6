// SPDX-License-Identifier: MIT
#include "fitting/loop_joiner.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

namespace fitting {
namespace {

constexpr std::size_t kInBlock = 96;      // after a split
constexpr std::size_t kMostInBlock = 192; // before one
constexpr std::size_t kInPart = 32;

/// More than the rounding of four distances can be off.
constexpr double kRounding = 1e-3;

} // namespace

void LoopJoiner::Box::add(const Pixel &pixel) {
    left = std::min(left, pixel.x);
    top = std::min(top, pixel.y);
    right = std::max(right, pixel.x);
    bottom = std::max(bottom, pixel.y);
}

bool LoopJoiner::Bridge::isBefore(const Bridge &other) const {
    return std::tie(added, block, at, entry) < std::tie(other.added, other.block, other.at, other.entry);
}

LoopJoiner::LoopJoiner(std::span<const Pixel> places, std::span<const std::uint32_t> order)
    : m_places(places), m_blocks(1), m_size(order.size()) {
    for (std::size_t at = 0; at < order.size(); ++at) {
        const std::uint32_t from = order[at];
        const std::uint32_t to = order[(at + 1) % order.size()];
        m_blocks.front().edges.push_back({from, to, distance(from, to)});
    }
    split(0);
}

double LoopJoiner::gap(const Box &a, const Box &b) {
    const auto along = [](std::int32_t low, std::int32_t high, std::int32_t otherLow, std::int32_t otherHigh) {
        return std::max(static_cast<double>(otherLow) - high, static_cast<double>(low) - otherHigh);
    };
    return std::max({0.0, along(a.left, a.right, b.left, b.right), along(a.top, a.bottom, b.top, b.bottom)});
}

double LoopJoiner::distance(std::uint32_t a, std::uint32_t b) const {
    return std::sqrt(squaredDistance(m_places[a], m_places[b]));
}

double LoopJoiner::leastAdded(const Block &block, const Part &part) const {
    return gap(block.from, part.box) + gap(block.to, part.box) - block.longest - part.longest - kRounding;
}

std::vector<LoopJoiner::Part> LoopJoiner::partsOf(std::span<const std::uint32_t> loop) const {
    std::vector<Part> parts;
    for (std::size_t entry = 0; entry < loop.size(); ++entry) {
        const std::uint32_t first = loop[entry];
        const std::uint32_t last = loop[(entry + loop.size() - 1) % loop.size()];
        if (entry % kInPart == 0)
            parts.push_back({entry, entry, Box::around(m_places[last]), 0});
        Part &part = parts.back();
        part.end = entry + 1;
        part.box.add(m_places[last]);
        part.box.add(m_places[first]);
        part.longest = std::max(part.longest, distance(last, first));
    }
    return parts;
}

/// Every pair of bridges between a block and a part, as far as they can be cheaper than the best.
void LoopJoiner::tryAll(std::span<const std::uint32_t> loop, std::size_t number, const Part &part, Bridge &best) {
    const Block &block = m_blocks[number];
    for (std::size_t at = 0; at < block.edges.size(); ++at) {
        const Edge &edge = block.edges[at];
        const double away =
            gap(Box::around(m_places[edge.from]), part.box) + gap(Box::around(m_places[edge.to]), part.box);
        ++m_visited;
        if (away - edge.length - part.longest - kRounding > best.added)
            continue;
        m_visited += part.end - part.first;
        for (std::size_t entry = part.first; entry < part.end; ++entry) {
            const std::uint32_t first = loop[entry];
            const std::uint32_t last = loop[(entry + loop.size() - 1) % loop.size()];
            const double added =
                distance(edge.from, first) + distance(last, edge.to) - edge.length - distance(last, first);
            const Bridge bridge = {added, number, at, entry};
            if (bridge.isBefore(best))
                best = bridge;
        }
    }
}

LoopJoiner::Bridge LoopJoiner::cheapest(std::span<const std::uint32_t> loop) {
    const std::vector<Part> parts = partsOf(loop);
    // The most promising pair first: with what it holds most of the others need no look.
    std::size_t nearestBlock = 0;
    std::size_t nearestPart = 0;
    double nearest = std::numeric_limits<double>::infinity();
    for (std::size_t block = 0; block < m_blocks.size(); ++block) {
        for (std::size_t part = 0; part < parts.size(); ++part) {
            const double least = leastAdded(m_blocks[block], parts[part]);
            if (least >= nearest)
                continue;
            nearest = least;
            nearestBlock = block;
            nearestPart = part;
        }
    }
    m_visited += 2 * m_blocks.size() * parts.size();
    Bridge best = {std::numeric_limits<double>::infinity(), m_blocks.size(), 0, 0};
    tryAll(loop, nearestBlock, parts[nearestPart], best);
    for (std::size_t block = 0; block < m_blocks.size(); ++block)
        for (const Part &part : parts)
            if (leastAdded(m_blocks[block], part) <= best.added)
                tryAll(loop, block, part, best);
    return best;
}

void LoopJoiner::join(std::span<const std::uint32_t> loop) {
    if (m_size * loop.size() <= kMostBridges)
        insert(cheapest(loop), loop);
    else
        insert({0, m_blocks.size() - 1, m_blocks.back().edges.size() - 1, 0}, loop);
}

void LoopJoiner::insert(const Bridge &bridge, std::span<const std::uint32_t> loop) {
    std::vector<Edge> &edges = m_blocks[bridge.block].edges;
    const std::uint32_t to = edges[bridge.at].to;
    std::vector<Edge> added;
    added.reserve(loop.size());
    const auto entered = [&](std::size_t step) { return loop[(bridge.entry + step) % loop.size()]; };
    for (std::size_t step = 0; step < loop.size(); ++step) {
        const std::uint32_t next = step + 1 < loop.size() ? entered(step + 1) : to;
        added.push_back({entered(step), next, distance(entered(step), next)});
    }
    edges[bridge.at].to = entered(0);
    edges[bridge.at].length = distance(edges[bridge.at].from, entered(0));
    edges.insert(edges.begin() + static_cast<std::ptrdiff_t>(bridge.at) + 1, added.begin(), added.end());
    m_size += loop.size();
    if (edges.size() > kMostInBlock)
        split(bridge.block);
    else
        measure(m_blocks[bridge.block]);
}

void LoopJoiner::measure(Block &block) const {
    block.from = Box::around(m_places[block.edges.front().from]);
    block.to = Box::around(m_places[block.edges.front().to]);
    block.longest = 0;
    for (const Edge &edge : block.edges) {
        block.from.add(m_places[edge.from]);
        block.to.add(m_places[edge.to]);
        block.longest = std::max(block.longest, edge.length);
    }
}

void LoopJoiner::split(std::size_t number) {
    const std::vector<Edge> edges = std::move(m_blocks[number].edges);
    std::vector<Block> blocks;
    for (std::size_t first = 0; first < edges.size(); first += kInBlock) {
        const std::size_t end = std::min(first + kInBlock, edges.size());
        blocks.push_back(
            {{edges.begin() + static_cast<std::ptrdiff_t>(first), edges.begin() + static_cast<std::ptrdiff_t>(end)},
             {},
             {},
             0});
        measure(blocks.back());
    }
    m_blocks[number] = std::move(blocks.front());
    m_blocks.insert(m_blocks.begin() + static_cast<std::ptrdiff_t>(number) + 1,
                    std::make_move_iterator(blocks.begin() + 1), std::make_move_iterator(blocks.end()));
}

std::vector<std::uint32_t> LoopJoiner::order() const {
    std::vector<std::uint32_t> order;
    order.reserve(m_size);
    for (const Block &block : m_blocks)
        for (const Edge &edge : block.edges)
            order.push_back(edge.from);
    return order;
}

} // namespace fitting
