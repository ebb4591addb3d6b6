// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

namespace canvas {

/// A position in pixels; a pixel's centre has integer coordinates.
struct Position {
    double x;
    double y;

    friend bool operator==(const Position &, const Position &) = default;
};

/// A direction, of any length but zero.
struct Direction {
    double x;
    double y;
};

/// The smallest and the largest coordinates of a rectangle; both belong to it.
struct Extent {
    Position low;
    Position high;

    bool holds(const Position &position) const {
        return position.x >= low.x && position.x <= high.x && position.y >= low.y && position.y <= high.y;
    }
};

/// A straight piece of a line.
struct StrokeSegment {
    Position from;
    Position to;
    Direction along; ///< of unit length

    /// Both ends differ.
    StrokeSegment(const Position &from, const Position &to);

    /// Moves ends outside the extent to its sides; false when nothing lies inside.
    bool clip(const Extent &extent);
};

/// What a stroke covers of one segment: the strip around it, cut off at both ends. The cuts' normals point forward.
struct StrokeBody {
    const StrokeSegment &segment;
    const Direction &start;
    const Direction &end;
    double hidden = 0; ///< pixels at either end that need not be drawn
};

/// Where two consecutive segments meet: the normal of the cut along their bisector, or of a straight cut of either when
/// they turn too sharply for that and something has to round the corner.
struct StrokeJoint {
    Direction endOfFirst;
    Direction startOfSecond;
    bool isSharp;

    StrokeJoint(const StrokeSegment &first, const StrokeSegment &second);

    /// How far a body's corners lie past the ends of its segment at most, in reaches of the stroke: along the segment
    /// and across it.
    static constexpr double kLean = 0.16;
    static constexpr double kMitre = 1.02;
};

} // namespace canvas
