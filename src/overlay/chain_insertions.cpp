// SPDX-License-Identifier: MIT
// Many insertions at once. In the two vectors of a chain each would move everything behind it, which for the thousands
// of gaps that a fit can fill is quadratic. Here the points are linked instead, and the vectors are made once.
//
// Links among the anchors answer what an insertion asks for: the anchors around a segment may be any number of points
// away in a chain without the layout. Positions are found by walking on from the last one.

#include <cstdint>
#include <tuple>
#include <utility>
#include <vector>

#include "overlay/chain.h"
#include "overlay/segment_controls.h"
#include "overlay/types/placement.h"

namespace {

class LinkedChain {
  public:
    /// Of a chain with anchors, with room for that many insertions.
    LinkedChain(const Chain &chain, std::size_t insertions) : m_placement(chain.placement), m_size(chain.size()) {
        m_nodes.reserve(chain.size() + kRun * insertions);
        for (std::size_t index = 0; index < chain.size(); ++index) {
            const auto node = static_cast<Link>(index);
            m_nodes.push_back({chain.points[index], chain.pointsF[index], node + 1, node, node});
        }
        m_nodes.back().next = kFirst;
        m_firstAnchor = static_cast<Link>(*anchorAtOrAfter(chain.points, kFirst));
        for (Link node = m_firstAnchor + 1; node < m_nodes.size(); ++node) {
            if (isAnchor(m_nodes[node].point))
                linkAnchor(m_nodes[m_firstAnchor].anchorBefore, node);
        }
    }

    void insert(const MPoint &point, std::size_t index) {
        seek(index % m_size);
        // Before the first anchor comes the last.
        const bool wraps = m_cursor.anchor == kNone;
        const Link begin = wraps ? m_nodes[m_firstAnchor].anchorBefore : m_cursor.anchor;
        const std::size_t erased = eraseControls(begin);
        const Link inserted = link(begin, insertedRun(point, neighboursOf(begin)));
        m_size += kRun - erased;
        if (!wraps)
            moveCursorPast(inserted, erased);
    }

    void store(const Chain &chain) const {
        std::vector<MPoint> points;
        std::vector<MPointF> pointsF;
        points.reserve(m_size);
        pointsF.reserve(m_size);
        Link node = kFirst;
        do {
            points.push_back(m_nodes[node].point);
            pointsF.push_back(m_nodes[node].twin);
            node = m_nodes[node].next;
        } while (node != kFirst);
        chain.points = std::move(points);
        chain.pointsF = std::move(pointsF);
    }

  private:
    /// Of a node. Enough for a hundred gigabytes of points.
    using Link = std::uint32_t;
    /// Nothing is ever inserted in front of it, and it is never erased: both happen behind an anchor.
    static constexpr Link kFirst = 0;
    static constexpr Link kNone = 0xFFFFFFFF;
    static constexpr std::size_t kRun = std::tuple_size_v<InsertedRun>;
    /// Where the inserted point stands in it.
    static constexpr std::size_t kInserted = kRun / 2;

    struct Node {
        MPoint point;
        MPointF twin;
        Link next; ///< the first follows the last, also among the anchors
        Link anchorBefore;
        Link anchorAfter;
    };
    /// A place in the chain, and the last anchor in front of it.
    struct Cursor {
        Link node = kFirst;
        std::size_t index = 0;
        Link anchor = kNone;
        std::size_t anchorIndex = 0;
    };

    void seek(std::size_t index) {
        if (index < m_cursor.index)
            m_cursor = {};
        for (; m_cursor.index < index; ++m_cursor.index) {
            if (isAnchor(m_nodes[m_cursor.node].point)) {
                m_cursor.anchor = m_cursor.node;
                m_cursor.anchorIndex = m_cursor.index;
            }
            m_cursor.node = m_nodes[m_cursor.node].next;
        }
    }

    /// After an insertion behind the cursor's anchor, so in front of the cursor or round it.
    void moveCursorPast(Link inserted, std::size_t erased) {
        if (m_cursor.index - m_cursor.anchorIndex <= erased) {
            m_cursor.index = m_cursor.anchorIndex + 1;
            m_cursor.node = m_nodes[m_cursor.anchor].next;
            return;
        }
        m_cursor.index += kRun - erased;
        if (isAnchor(m_nodes[inserted].point)) {
            m_cursor.anchor = inserted;
            m_cursor.anchorIndex += 1 + kInserted;
        }
    }

    /// Takes out the control points of a segment; returns how many there were.
    std::size_t eraseControls(Link begin) {
        std::size_t erased = 0;
        Link &next = m_nodes[begin].next;
        for (; erased < 2 && next != kFirst && isControl(m_nodes[next].point); ++erased)
            next = m_nodes[next].next;
        return erased;
    }

    SegmentNeighbours neighboursOf(Link begin) const {
        const Node &from = m_nodes[begin];
        const Node &end = m_nodes[from.next];
        const Link after = (isAnchor(end.point) ? end : from).anchorAfter;
        return {m_nodes[from.anchorBefore].point, from.point, end.point, m_nodes[after].point};
    }

    /// The node of the inserted point.
    Link link(Link begin, const InsertedRun &run) {
        const auto first = static_cast<Link>(m_nodes.size());
        const Link end = m_nodes[begin].next;
        for (const MPoint &point : run) {
            const auto node = static_cast<Link>(m_nodes.size());
            m_nodes.push_back({point, normalisePoint(point, m_placement), node + 1, node, node});
        }
        m_nodes.back().next = end;
        m_nodes[begin].next = first;
        const auto inserted = static_cast<Link>(first + kInserted);
        if (isAnchor(m_nodes[inserted].point))
            linkAnchor(begin, inserted);
        return inserted;
    }

    void linkAnchor(Link before, Link anchor) {
        const Link after = m_nodes[before].anchorAfter;
        m_nodes[anchor].anchorBefore = before;
        m_nodes[anchor].anchorAfter = after;
        m_nodes[before].anchorAfter = anchor;
        m_nodes[after].anchorBefore = anchor;
    }

    const PixelRect &m_placement;
    std::size_t m_size;
    std::vector<Node> m_nodes;
    Link m_firstAnchor = kNone;
    Cursor m_cursor;
};

} // namespace

void insertPoints(const Chain &chain, std::span<const Insertion> insertions) {
    if (insertions.empty() || countAnchors(chain.points) == 0)
        return;
    LinkedChain linked(chain, insertions.size());
    for (const Insertion &insertion : insertions)
        linked.insert(insertion.point, insertion.index);
    linked.store(chain);
}
