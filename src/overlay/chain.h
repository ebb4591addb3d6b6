// SPDX-License-Identifier: MIT
#pragma once

// Editing a chain of outline points: the live outline and every keyframe record are edited by the same functions.
//
// A chain is two vectors of equal length and order, pixel points and their normalised twins, and the rectangle that
// maps one to the other. A twin's coordinates are recomputed whenever its pixel point moves; curve flags are kept in
// both, handleShown in the pixel points alone. Results of float arithmetic are truncated toward zero. Look-ups wrap
// around: before index 0 comes the last point, after the last comes index 0.
//
// The functions accept any sequence of points: what does not have the layout (outlines restored from a host's data may
// hold anything) is left alone where a neighbour of the expected kind is missing, and nothing is read outside the
// chain.

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "overlay/types/outline_points.h"

struct Chain {
    std::vector<MPoint> &points;
    std::vector<MPointF> &pointsF;
    const PixelRect &placement;

    std::size_t size() const { return points.size(); }
};

/// The hit tolerance of every test, in pixels, on both axes, inclusive. Fixed: the size scale does not change it.
inline constexpr std::int32_t kHitTolerance = 10;
/// The fewest points a mask is made of: three anchors with their control points.
inline constexpr std::size_t kFewestMaskPoints = 9;

inline bool isAnchor(const MPoint &point) {
    return point.type == kAnchorPoint;
}
inline bool isControl(const MPoint &point) {
    return point.type == kControlPoint;
}

/// The index `steps` (at most one round in either direction) away from `index`, wrapping.
std::size_t wrappedIndex(std::size_t index, std::ptrdiff_t steps, std::size_t count);
/// Whether two positions are within the tolerance of one another on both axes.
bool isWithin(std::int32_t x0, std::int32_t y0, std::int32_t x1, std::int32_t y1, std::int32_t tolerance);

std::size_t countAnchors(const std::vector<MPoint> &points);
/// Chain positions of the anchors, in order.
std::vector<std::size_t> anchorPositions(const std::vector<MPoint> &points);
/// The nearest anchor walking from `index` (itself included) backwards or forwards; nothing in a chain without anchors.
std::optional<std::size_t> anchorAtOrBefore(const std::vector<MPoint> &points, std::size_t index);
std::optional<std::size_t> anchorAtOrAfter(const std::vector<MPoint> &points, std::size_t index);
/// The lowest-numbered anchor within the hit tolerance of (x, y).
std::optional<std::size_t> hitTestAnchor(const std::vector<MPoint> &points, std::int32_t x, std::int32_t y);

// Whatever grows a chain throws std::bad_alloc before it has changed anything: both vectors get room first, so that
// they stay equally long.

/// How many points an insertion or an appended anchor adds at most.
inline constexpr std::size_t kMostPointsAdded = 5;
/// Makes room for that many more points.
void makeRoom(const Chain &chain, std::size_t count);

/// Appends an anchor, after the straight control points from the last one. An outline that is closed already stays
/// closed.
void appendAnchor(const Chain &chain, std::int32_t x, std::int32_t y);
/// Appends (or, in a closed chain, re-places) the straight control points from the last anchor to the first.
void closeChain(const Chain &chain);
/// Inserts a point on the segment that holds chain position `index`. False in a chain without anchors.
bool insertPoint(const Chain &chain, const MPoint &point, std::size_t index);
/// A point for the segment that holds chain position `index`, counted when those before it are in place.
struct Insertion {
    MPoint point;
    std::size_t index;
};
/// The same as insertPoint for one after the other, in one step: all of them or, without memory, none. Takes time
/// proportional to the chain, as long as the indices ascend.
void insertPoints(const Chain &chain, std::span<const Insertion> insertions);
/// Removes the selected anchors with their control points; segments that arise are straight, the closing one included.
void removeAnchors(const Chain &chain, const std::vector<unsigned int> &selected);
/// Puts the anchors, given by number, into that order; each number comes once. Segments that stay keep their control
/// points, those that arise are straight.
void reorderAnchors(const Chain &chain, const std::vector<std::uint32_t> &order);
/// Whether the chain ends with control points, those of the segment back to the first anchor.
bool isClosed(const Chain &chain);
/// Removes the last anchor and two control points.
void removeLastAnchor(const Chain &chain);

/// Moves one control point and marks its segment as bent at both ends.
void moveControl(const Chain &chain, std::size_t index, std::int32_t dx, std::int32_t dy);
/// Moves one anchor; bent sides move their handle along, straight sides are re-placed.
void moveAnchor(const Chain &chain, std::size_t index, std::int32_t dx, std::int32_t dy);
/// Puts one anchor on a place in fractions of the placement rectangle, kept as it is; the sides follow as in
/// moveAnchor. On the pixel where it is already, they stay as they are.
void placeAnchor(const Chain &chain, std::size_t index, float x, float y);
/// Moves every point.
void moveAll(const Chain &chain, std::int32_t dx, std::int32_t dy);
/// Recomputes the coordinates of a point's twin.
void updateTwin(const Chain &chain, std::size_t index);

/// Limits a move of the whole outline to the display: the right and bottom edges win when the outline is larger.
void clampMoveToDisplay(const std::vector<MPoint> &points, std::int32_t displayWidth, std::int32_t displayHeight,
                        std::int32_t &dx, std::int32_t &dy);

/// Hides every handle, then shows those of anchor `index`. A control point changes nothing; nothing given only hides.
void showHandles(std::vector<MPoint> &points, std::optional<std::size_t> index);

/// A picked handle's anchor and the handle on the anchor's other side.
struct OppositeHandle {
    std::size_t anchor;
    std::size_t handle;
};
/// Nothing unless `index` is a control point beside an anchor with another control point on its other side.
std::optional<OppositeHandle> oppositeHandle(const std::vector<MPoint> &points, std::size_t index);

/// Sums and differences that wrap at 32 bits, as the coordinates of hosts may be anything.
std::int32_t wrappingSum(std::int32_t a, std::int32_t b);
std::int32_t wrappingDifference(std::int32_t a, std::int32_t b);
