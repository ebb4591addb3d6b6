// SPDX-License-Identifier: MIT
// Putting anchors into border order: a walk along the border of a mask, from the first anchor's pixel and round.
//
// What is walked is the crack between inside and outside. Each step of it has an inside pixel on its right hand and an
// outside pixel on its left, and the border band is nothing but those two rows of pixels: going along the crack visits
// the band eight-connected, its inner and its outer pixel side by side. A pixel is cleared when it is visited, that is,
// the anchors that stand on it are taken off and appended to the order. At the corner ahead a step turns left if the
// pixel ahead on the outer side is inside, else goes straight on if the one on the inner side is, else turns right.
// Every step thus has one successor and one predecessor: steps form closed loops, a walk ends where it began, never in
// a branch, and all loops together have at most four steps for each inner pixel, which makes the tracing linear in the
// border's length. Inside pixels that touch by a corner belong to one loop.
//
// A walk from pixel to pixel was rejected. On a band two pixels wide it has to choose between neighbours at every step;
// it strands in corners, leaves the other row behind with the anchors on it, and has to look for the longest branch
// that is left. Loops have no branches: the nearest thing to one is another loop, of a hole or of a further island. The
// loop of the first anchor comes first, the others that hold anchors follow, longest first. Each is joined to what is
// there by the cheapest pair of bridges (loop_joiner.h). Loops of holes run the other way round than outer ones, and
// that is what an even-odd outline needs: a hole hangs on a thin double bridge and is cut out, an island is added the
// same way.
//
// The work: one mark for each side of each inner pixel, one list of anchors for each pixel, both in border order.

#include "fitting/trace.h"

#include <algorithm>

#include "fitting/loop_joiner.h"

namespace fitting {
namespace {

/// One step of the crack: along one side of an inside pixel. Round a single pixel they are top, right, bottom, left.
struct Step {
    Pixel inside;
    int side = 0;
};

constexpr int kSides = 4;
constexpr Pixel kOutward[kSides] = {{0, -1}, {1, 0}, {0, 1}, {-1, 0}};

Pixel operator+(const Pixel &a, const Pixel &b) {
    return {a.x + b.x, a.y + b.y};
}

/// The way a step goes: to the right of outward.
Pixel heading(int side) {
    return kOutward[(side + 1) % kSides];
}

/// Anchors of one loop of the border in walking order.
struct Loop {
    std::vector<std::uint32_t> anchors;
    std::size_t length = 0; ///< steps
};

class Walker {
  public:
    Walker(const BitPicture &mask, const Border &border, std::span<const BorderPlace> anchors)
        : m_mask(mask), m_border(border), m_walkedSides(border.pixels().size()), m_first(border.pixels().size(), kNone),
          m_next(anchors.size(), kNone) {
        for (std::size_t anchor = anchors.size(); anchor-- > 0;) {
            if (!anchors[anchor])
                continue;
            m_next[anchor] = m_first[*anchors[anchor]];
            m_first[*anchors[anchor]] = static_cast<std::uint32_t>(anchor);
            ++m_remaining;
        }
    }

    bool isDone() const { return m_remaining == 0; }

    /// Walks every loop that a pixel of the border touches and that has not been walked yet.
    void walkFrom(std::uint32_t place, std::vector<Loop> &loops) {
        const Pixel pixel = m_border.pixels()[place];
        const bool isInside = inside(pixel);
        for (int side = 0; side < kSides; ++side) {
            const Pixel neighbour = pixel + kOutward[side];
            if (inside(neighbour) == isInside)
                continue;
            // From the other side of the crack the side is the opposite one.
            const Step step = isInside ? Step{pixel, side} : Step{neighbour, (side + 2) % kSides};
            if (isWalked(step))
                continue;
            Loop loop;
            take(place, loop);
            walk(step, loop);
            loops.push_back(std::move(loop));
        }
    }

  private:
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    bool inside(const Pixel &pixel) const { return m_mask.test(pixel.x, pixel.y); }
    std::uint8_t &walkedSides(const Step &step) { return m_walkedSides[*m_border.indexOf(step.inside)]; }
    bool isWalked(const Step &step) { return (walkedSides(step) >> step.side & 1) != 0; }

    void walk(Step step, Loop &loop) {
        while (!isWalked(step)) {
            walkedSides(step) = static_cast<std::uint8_t>(walkedSides(step) | 1 << step.side);
            ++loop.length;
            take(*m_border.indexOf(step.inside), loop);
            if (const BorderPlace outer = m_border.indexOf(step.inside + kOutward[step.side]))
                take(*outer, loop);
            step = successor(step);
        }
    }

    Step successor(const Step &step) const {
        const Pixel ahead = step.inside + heading(step.side);
        const Pixel aheadOutside = ahead + kOutward[step.side];
        if (inside(aheadOutside))
            return {aheadOutside, (step.side + 3) % kSides};
        if (inside(ahead))
            return {ahead, step.side};
        return {step.inside, (step.side + 1) % kSides};
    }

    /// Clears a pixel: its anchors go to the loop.
    void take(std::uint32_t place, Loop &loop) {
        for (std::uint32_t &anchor = m_first[place]; anchor != kNone; anchor = m_next[anchor]) {
            loop.anchors.push_back(anchor);
            --m_remaining;
        }
    }

    const BitPicture &m_mask;
    const Border &m_border;
    std::vector<std::uint8_t> m_walkedSides; ///< a bit a side, for each border pixel
    std::vector<std::uint32_t> m_first;      ///< anchor on each border pixel
    std::vector<std::uint32_t> m_next;       ///< the next anchor on the same pixel
    std::size_t m_remaining = 0;
};

/// Loops with anchors on them: that of the first anchor, then the others, longest first.
std::vector<Loop> walkLoops(const BitPicture &mask, const Border &border, std::span<const BorderPlace> anchors) {
    std::vector<Loop> loops;
    Walker walker(mask, border, anchors);
    const auto first = std::ranges::find_if(anchors, [](const BorderPlace &place) { return place.has_value(); });
    if (first == anchors.end())
        return loops;
    walker.walkFrom(**first, loops);
    for (std::uint32_t place = 0; place < border.pixels().size() && !walker.isDone(); ++place)
        walker.walkFrom(place, loops);
    std::erase_if(loops, [](const Loop &loop) { return loop.anchors.empty(); });
    std::stable_sort(loops.begin() + 1, loops.end(), [](const Loop &a, const Loop &b) { return a.length > b.length; });
    return loops;
}

/// Turns the order round, the first anchor staying first, if that keeps more anchors behind the one they follow now.
void chooseDirection(std::vector<std::uint32_t> &order, std::size_t anchors) {
    std::ptrdiff_t forward = 0;
    for (std::size_t at = 0; at < order.size(); ++at) {
        const std::size_t here = order[at];
        const std::size_t next = order[(at + 1) % order.size()];
        forward += (here + 1) % anchors == next ? 1 : 0;
        forward -= (next + 1) % anchors == here ? 1 : 0;
    }
    if (forward < 0)
        std::reverse(order.begin() + 1, order.end());
}

} // namespace

std::vector<std::uint32_t> traceAnchors(const BitPicture &mask, const Border &border,
                                        std::span<const BorderPlace> anchors) {
    std::vector<Loop> loops = walkLoops(mask, border, anchors);
    if (loops.empty())
        return {};
    std::vector<Pixel> places(anchors.size());
    for (std::size_t anchor = 0; anchor < anchors.size(); ++anchor) {
        if (anchors[anchor])
            places[anchor] = border.pixels()[*anchors[anchor]];
    }
    LoopJoiner joiner(places, loops.front().anchors);
    for (std::size_t loop = 1; loop < loops.size(); ++loop)
        joiner.join(loops[loop].anchors);
    std::vector<std::uint32_t> order = joiner.order();
    // The lowest number stands on the pixel where the walk began, so only a bridge can have come before it.
    std::rotate(order.begin(), std::ranges::min_element(order), order.end());
    chooseDirection(order, anchors.size());
    return order;
}

} // namespace fitting
