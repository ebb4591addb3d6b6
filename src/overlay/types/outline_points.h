// SPDX-License-Identifier: MIT
#pragma once

// The point records and event codes that the editor, the rasterizer, the drawing component and the host exchange.
//
// Field order and widths are part of the boundary: records cross it by pointer and, as byte strings, bit for bit.
//
// Outline layout: one flat sequence anchor, control, control, anchor, control, control, ... Between two consecutive
// anchors stand exactly two control points: the first leaves the earlier anchor, the second arrives at the later one.
// An open outline of n anchors holds 3n - 2 points, a closed one 3n; the last two controls of a closed outline belong
// to the segment from the last anchor back to the first. Neighbour look-ups wrap around.

#include <cstdint>

/// Value of MPoint::type of a point that the outline passes through.
inline constexpr std::uint32_t kAnchorPoint = 0;
/// Value of MPoint::type of a Bezier control point (a handle's end).
inline constexpr std::uint32_t kControlPoint = 1;

/// An outline point in device pixels of the display surface.
struct MPoint {
    std::uint32_t type = kAnchorPoint;
    std::int32_t x = 0;
    std::int32_t y = 0;
    std::uint32_t curveIn = 0;     ///< anchors: the arriving segment has been bent
    std::uint32_t curveOut = 0;    ///< anchors: the leaving segment has been bent
    std::uint32_t handleShown = 0; ///< controls: the handle is shown because its anchor is picked

    friend bool operator==(const MPoint &, const MPoint &) = default;
};

/// The same point in normalised video coordinates: the video picture spans 0 to 1 on both axes.
struct MPointF {
    std::uint32_t type = kAnchorPoint;
    float x = 0;
    float y = 0;
    std::uint32_t curveIn = 0;
    std::uint32_t curveOut = 0;
    std::uint32_t handleShown = 0;

    friend bool operator==(const MPointF &, const MPointF &) = default;
};

static_assert(sizeof(MPoint) == 24 && sizeof(MPointF) == 24, "24 bytes are the serialised form of both records");

/// The no-point index.
inline constexpr std::int32_t CONST_DEFAULT_IDX = -1;

/// Values of HoverPoint::type.
inline constexpr std::uint32_t kHoverNothing = 0;
inline constexpr std::uint32_t kHoverPoint = 1;
inline constexpr std::uint32_t kHoverLine = 2;

/// What the pointer is over.
struct HoverPoint {
    std::uint32_t type = kHoverNothing;
    std::int32_t index = CONST_DEFAULT_IDX;     ///< the point under the pointer
    std::int32_t lineIndex = CONST_DEFAULT_IDX; ///< the first point of the segment under the pointer
    MPoint point;                               ///< where a point would be inserted, or the last drag position

    friend bool operator==(const HoverPoint &, const HoverPoint &) = default;
};

/// Event codes that the host's callable receives. The update of a point stands last on purpose: hosts compare numbers.
enum ECallBack_State : std::int32_t {
    ECB_POINT_ADD = 0,
    ECB_POINT_REMOVE = 1,
    ECB_MASK_CREATE = 2,
    ECB_MASK_UPDATE = 3,
    ECB_MASK_REMOVE = 4,
    ECB_POINT_UPDATE = 5,
};

/// The event argument of Orvanel::Interactive.
enum EControlState : std::int32_t {
    ECS_MOUSE_MOVE = 0,
    ECS_MOUSE_DOWN = 1,
    ECS_MOUSE_UP = 2,
    ECS_MOUSE_DBCLICK = 3,
    ECS_DELETE = 4,
    ECS_DELETE_LAST_POINT = 5,
};

/// Four signed 32-bit values: where something lies on the display surface, in device pixels.
struct PixelRect {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;

    friend bool operator==(const PixelRect &, const PixelRect &) = default;
};
