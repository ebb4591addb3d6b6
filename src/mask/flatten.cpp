// SPDX-License-Identifier: MIT
#include "mask/flatten.h"

#include <algorithm>
#include <cstdlib>

#include "mask/lanes.h"

// Hybrid forward differencing (Lien, Shantz and Pratt, SIGGRAPH 1987): the curve is stepped by forward differences, and
// the step is halved or doubled on the way as the local error asks, so that flat stretches cost few vertices and tight
// ones get many. The basis, per axis, with control points p0..p3 and a unit step:
//
//     e0 = p0    e1 = p3 - p0    e2 = 6 (p1 - 2 p2 + p3)    e3 = 6 (p0 - 2 p1 + p2)
//
//     one step     e0 += e1;  e1 += e2;  (e2, e3) = (2 e2 - e3, e2)
//     half step    e2 = (e2 + e3) / 8;  e1 = (e1 - e2) / 2;  e3 = e3 / 4
//     double step  e1 = 2 e1 + e2;  e3 = 4 e3;  e2 = 8 e2 - e3      (both with the new e3 where it stands after it)
//
// e2 and e3 are the second differences at the far and the near end of the step, so max(|e2|, |e3|) is six times the
// distance between curve and chord; max(|e3|, |2 e2 - e3|) is a quarter of that of the doubled step. The tolerance is a
// quarter of a pixel.
//
// Two arithmetics, because the pixels must equal those of the platform's own fill down to its rounding: segments that
// fit a box of 1022 pixels go through 32-bit integers that keep 10, later 13 fraction bits and drop the bits that the
// initial halvings shift out; larger ones go through 64-bit integers with 28 fraction bits in two levels, pieces of at
// most 2^11 pixels of error first, then each piece from its own rounded control points. Recursive subdivision would be
// simpler and as fast, and would put vertices elsewhere.
//
// Everything is computed relative to the start point. All values are integers, so the translation changes no bit, and
// it leaves the whole width of the words to the segment's own extent.

namespace Quill {
namespace {

constexpr std::int32_t kErrorTolerance = 24; // six times a quarter of a pixel, units

/// Largest extent of the control points, units, for which the 32-bit form holds.
constexpr std::int32_t kShortExtent = 16367;

struct Extent {
    std::int64_t low;
    std::int64_t high;

    /// Whether this, grown by one pixel, lies wholly off 0 .. `pixels`. Arguments in units.
    bool misses(std::int32_t pixels) const {
        return low - kUnitsPerPixel >= static_cast<std::int64_t>(pixels) * kUnitsPerPixel || high + kUnitsPerPixel <= 0;
    }
};

inline Extent extentOf(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d) {
    return {std::min(std::min(a, b), std::min(c, d)), std::max(std::max(a, b), std::max(c, d))};
}

inline Extent extentOfX(const CubicControls &p) {
    return extentOf(p[0].x, p[1].x, p[2].x, p[3].x);
}
inline Extent extentOfY(const CubicControls &p) {
    return extentOf(p[0].y, p[1].y, p[2].y, p[3].y);
}

inline bool isOutside(const CubicControls &p, const FlattenClip &clip) {
    return extentOfX(p).misses(clip.width) || extentOfY(p).misses(clip.height);
}

// --- 32 bits --------------------------------------------------------------------------------------------------------

constexpr int kShortFraction = 13;
constexpr int kShortStartFraction = 10;
constexpr std::int32_t kShortTolerance = kErrorTolerance << kShortFraction;

/// A segment in 32-bit arithmetic, both axes at once, relative to its start.
template <typename Pair>
class ShortCurve {
  public:
    explicit ShortCurve(const CubicControls &p)
        : m_origin(p[0]), e0(0, 0), e1((Pair(p[3]) - m_origin).shiftedLeft(kShortStartFraction)),
          e2(bend(Pair(p[1]), Pair(p[2]), Pair(p[3]))), e3(bend(m_origin, Pair(p[1]), Pair(p[2]))) {}

    bool errorExceeds(std::int32_t limit) const { return Pair::anyExceeds(e2, e3, limit); }
    /// A quarter of the error that the step would have at twice its length.
    bool quarterOfParentErrorExceeds(std::int32_t limit) const { return Pair::anyExceeds(e2 + e2 - e3, e3, limit); }

    /// Halving before the scale is fixed: e3 stays and `shift` carries its factor.
    void halveUnscaled(int shift) {
        e2 = (e2 + e3).shiftedRight(1);
        e1 = (e1 - e2.shiftedRight(shift)).shiftedRight(1);
    }

    /// From the start scale, with e2 and e3 still to be divided by 2^shift, to kShortFraction bits.
    void rescale(int shift) {
        constexpr int kGain = kShortFraction - kShortStartFraction;
        e1 = e1.shiftedLeft(kGain);
        e2 = e2.shiftedLeft(std::max(kGain - shift, 0)).shiftedRight(std::max(shift - kGain, 0));
        e3 = e3.shiftedLeft(std::max(kGain - shift, 0)).shiftedRight(std::max(shift - kGain, 0));
    }

    void step() {
        e0 = e0 + e1;
        e1 = e1 + e2;
        const Pair far = e2 + e2 - e3;
        e3 = e2;
        e2 = far;
    }
    void halve() {
        e2 = (e2 + e3).shiftedRight(3);
        e1 = (e1 - e2).shiftedRight(1);
        e3 = e3.shiftedRight(2);
    }
    void twice() {
        e1 = e1 + e1 + e2;
        e3 = e3.shiftedLeft(2);
        e2 = e2.shiftedLeft(3) - e3;
    }
    void storeVertex(FixedPoint *out) const {
        constexpr std::int32_t kHalf = 1 << (kShortFraction - 1);
        ((e0 + Pair(kHalf, kHalf)).shiftedRight(kShortFraction) + m_origin).store(out);
    }

  private:
    /// 6 (a - 2 b + c) at the start scale.
    static Pair bend(Pair a, Pair b, Pair c) {
        const Pair twice = ((a - b) + (c - b)).shiftedLeft(kShortStartFraction + 1);
        return twice + twice.shiftedLeft(1);
    }

    Pair m_origin;
    Pair e0;
    Pair e1;
    Pair e2;
    Pair e3;
};

/// Steps until none are left, or until more are than there is room for. No call and no check in the loop: while the
/// step is not halved, what is left can only shrink.
template <typename Pair>
FixedPoint *stepShort(ShortCurve<Pair> &state, std::uint32_t &stepsLeft, FixedPoint *out, const FixedPoint *limit) {
    ShortCurve<Pair> curve = state;
    std::uint32_t left = stepsLeft;
    while (left <= static_cast<std::size_t>(limit - out)) {
        --left;
        curve.step();
        curve.storeVertex(out++);
        if (left == 0)
            break;
        if (curve.errorExceeds(kShortTolerance)) {
            curve.halve();
            left *= 2;
        }
        while (left % 2 == 0 && !curve.quarterOfParentErrorExceeds(kShortTolerance / 4)) {
            curve.twice();
            left /= 2;
        }
    }
    state = curve;
    stepsLeft = left;
    return out;
}

template <typename Pair>
void flattenShort(const CubicControls &controls, VertexBuffer &vertices) {
    ShortCurve<Pair> curve(controls);
    int shift = 0;
    std::uint32_t left = 1;
    while (curve.errorExceeds((kErrorTolerance << kShortStartFraction) << shift)) {
        shift += 2;
        curve.halveUnscaled(shift);
        left *= 2;
    }
    curve.rescale(shift);
    constexpr std::size_t kUsual = 128;
    do {
        FixedPoint *out = vertices.room(std::max<std::size_t>(left, kUsual));
        vertices.setEnd(stepShort(curve, left, out, vertices.begin() + vertices.capacity()));
    } while (left != 0);
}

// --- 64 bits --------------------------------------------------------------------------------------------------------

constexpr int kLongFraction = 28;
constexpr std::int64_t kLongTolerance = std::int64_t{kErrorTolerance} << kLongFraction;
constexpr std::int64_t kPieceTolerance = std::int64_t{196608} << kLongFraction; // six times 2^11 pixels

constexpr std::int64_t roundLong(std::int64_t value) {
    return (value + (std::int64_t{1} << (kLongFraction - 1))) >> kLongFraction;
}

/// One axis in 64-bit arithmetic.
struct LongAxis {
    std::int64_t e0, e1, e2, e3;

    LongAxis() = default;
    LongAxis(std::int64_t p0, std::int64_t p1, std::int64_t p2, std::int64_t p3)
        : e0(p0 * (std::int64_t{1} << kLongFraction)), e1((p3 - p0) * (std::int64_t{1} << kLongFraction)),
          e2(6 * (p1 - 2 * p2 + p3) * (std::int64_t{1} << kLongFraction)),
          e3(6 * (p0 - 2 * p1 + p2) * (std::int64_t{1} << kLongFraction)) {}

    std::int64_t error() const { return std::max(std::abs(e2), std::abs(e3)); }
    std::int64_t parentError() const { return std::max(std::abs(4 * e3), std::abs(8 * e2 - 4 * e3)); }

    void step() {
        e0 += e1;
        const std::int64_t second = e2;
        e1 += second;
        e2 = 2 * second - e3;
        e3 = second;
    }
    void halve() {
        e2 = (e2 + e3) >> 3;
        e1 = (e1 - e2) >> 1;
        e3 >>= 2;
    }
    void twice() {
        e1 = 2 * e1 + e2;
        e3 *= 4;
        e2 = 8 * e2 - e3;
    }
    std::int64_t value() const { return roundLong(e0); }

    /// Control points of the piece that the next step covers, rounded to units. The divisions truncate.
    std::array<std::int64_t, 4> pieceControls() const {
        return {roundLong(e0), roundLong(e0 + (6 * e1 - e2 - 2 * e3) / 18),
                roundLong(e0 + (12 * e1 - 2 * e2 - e3) / 18), roundLong(e0 + e1)};
    }
};

using PieceControls = std::array<std::int64_t, 4>;

/// The controls of a piece back in the coordinates of its segment.
CubicControls pieceIn(const PieceControls &x, const PieceControls &y, FixedPoint origin) {
    CubicControls controls{};
    for (std::size_t i = 0; i < controls.size(); ++i)
        controls[i] = {static_cast<std::int32_t>(x[i] + origin.x), static_cast<std::int32_t>(y[i] + origin.y)};
    return controls;
}

void flattenLong(const CubicControls &p, VertexBuffer &vertices, const FlattenClip *clip) {
    const FixedPoint origin = p[0];
    const auto start = [&](std::int32_t FixedPoint::*axis) {
        const std::int64_t base = origin.*axis;
        return LongAxis(0, p[1].*axis - base, p[2].*axis - base, p[3].*axis - base);
    };
    LongAxis highX = start(&FixedPoint::x);
    LongAxis highY = start(&FixedPoint::y);
    std::uint32_t highLeft = 1;
    while (std::max(highX.error(), highY.error()) > kPieceTolerance) {
        highX.halve();
        highY.halve();
        highLeft *= 2;
    }

    LongAxis x;
    LongAxis y;
    std::uint32_t left = 0;
    for (;;) {
        if (left == 0) {
            const auto cx = highX.pieceControls();
            const auto cy = highY.pieceControls();
            x = LongAxis(cx[0], cx[1], cx[2], cx[3]);
            y = LongAxis(cy[0], cy[1], cy[2], cy[3]);
            left = 1;
            if (!clip || !isOutside(pieceIn(cx, cy, origin), *clip)) {
                while (std::max(x.error(), y.error()) > kLongTolerance) {
                    x.halve();
                    y.halve();
                    left *= 2;
                }
            }
            --highLeft;
            if (highLeft != 0) {
                highX.step();
                highY.step();
                if (std::max(highX.error(), highY.error()) > kPieceTolerance) {
                    highX.halve();
                    highY.halve();
                    highLeft *= 2;
                }
                while (highLeft % 2 == 0 && std::max(highX.parentError(), highY.parentError()) <= kPieceTolerance) {
                    highX.twice();
                    highY.twice();
                    highLeft /= 2;
                }
            }
        }
        x.step();
        y.step();
        vertices.push_back(
            {static_cast<std::int32_t>(x.value() + origin.x), static_cast<std::int32_t>(y.value() + origin.y)});
        --left;
        if (left == 0) {
            // The piece is done with. Its differences are not refined any more: one that does not bend at all would
            // let its step be doubled for ever.
            if (highLeft == 0)
                return;
            continue;
        }
        if (std::max(x.error(), y.error()) > kLongTolerance) {
            x.halve();
            y.halve();
            left *= 2;
        }
        while (left % 2 == 0 && std::max(x.parentError(), y.parentError()) <= kLongTolerance) {
            x.twice();
            y.twice();
            left /= 2;
        }
    }
}

} // namespace

bool usesShortArithmetic(const CubicControls &controls) {
    const Extent x = extentOfX(controls);
    const Extent y = extentOfY(controls);
    return x.high - x.low <= kShortExtent && y.high - y.low <= kShortExtent;
}

void flattenSegment(const CubicControls &controls, VertexBuffer &vertices, const FlattenClip *clip) {
    if (!usesShortArithmetic(controls))
        flattenLong(controls, vertices, clip);
    else if (clip && isOutside(controls, *clip))
        vertices.push_back(controls[3]);
    else
        flattenShort<lanes::IntPair>(controls, vertices);
}

} // namespace Quill
