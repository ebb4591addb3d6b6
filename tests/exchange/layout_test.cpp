// SPDX-License-Identifier: MIT
// Where the fields of the records lie that other modules read: the same on every 64-bit platform. Most of this is
// settled when the file compiles.

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

#include "mask/mask_handler.h"
#include "overlay/types/keyframe_mask_info.h"
#include "overlay/types/outline_points.h"
#include "overlay/types/overlay_canvas.h"
#include "platform/dib.h"

namespace {

static_assert(sizeof(void *) == 8, "records with vectors are laid out for 64 bits");

template <typename Point>
constexpr bool isLaidOutAsAPoint() {
    return std::is_standard_layout_v<Point> && std::is_trivially_copyable_v<Point> && sizeof(Point) == 24 &&
           alignof(Point) == 4 && offsetof(Point, type) == 0 && offsetof(Point, x) == 4 && offsetof(Point, y) == 8 &&
           offsetof(Point, curveIn) == 12 && offsetof(Point, curveOut) == 16 && offsetof(Point, handleShown) == 20;
}
static_assert(isLaidOutAsAPoint<MPoint>());
static_assert(isLaidOutAsAPoint<MPointF>());
static_assert(std::is_same_v<decltype(MPoint::type), std::uint32_t> &&
              std::is_same_v<decltype(MPoint::x), std::int32_t>);
static_assert(std::is_same_v<decltype(MPointF::x), float> && sizeof(float) == 4);

static_assert(std::is_standard_layout_v<HoverPoint> && sizeof(HoverPoint) == 36 && alignof(HoverPoint) == 4);
static_assert(offsetof(HoverPoint, type) == 0 && offsetof(HoverPoint, index) == 4 &&
              offsetof(HoverPoint, lineIndex) == 8 && offsetof(HoverPoint, point) == 12);

static_assert(std::is_standard_layout_v<PixelRect> && sizeof(PixelRect) == 16);
static_assert(offsetof(PixelRect, left) == 0 && offsetof(PixelRect, top) == 4 && offsetof(PixelRect, width) == 8 &&
              offsetof(PixelRect, height) == 12);

// A vector is three pointers with every compiler's release library.
static_assert(sizeof(std::vector<MPoint>) == 24 && sizeof(std::vector<std::uint8_t>) == 24);
using Quill::KeyFrameMaskInfo;
static_assert(std::is_standard_layout_v<KeyFrameMaskInfo> && sizeof(KeyFrameMaskInfo) == 104 &&
              alignof(KeyFrameMaskInfo) == 8);
static_assert(offsetof(KeyFrameMaskInfo, duration) == 0 && offsetof(KeyFrameMaskInfo, points) == 8 &&
              offsetof(KeyFrameMaskInfo, pointsF) == 32 && offsetof(KeyFrameMaskInfo, placement) == 56 &&
              offsetof(KeyFrameMaskInfo, maskWidth) == 72 && offsetof(KeyFrameMaskInfo, maskHeight) == 74 &&
              offsetof(KeyFrameMaskInfo, maskBuffer) == 80);

static_assert(sizeof(ECallBack_State) == 4 && sizeof(EControlState) == 4);
static_assert(ECB_POINT_ADD == 0 && ECB_POINT_REMOVE == 1 && ECB_MASK_CREATE == 2 && ECB_MASK_UPDATE == 3 &&
              ECB_MASK_REMOVE == 4 && ECB_POINT_UPDATE == 5);
static_assert(ECS_MOUSE_MOVE == 0 && ECS_MOUSE_DOWN == 1 && ECS_MOUSE_UP == 2 && ECS_MOUSE_DBCLICK == 3 &&
              ECS_DELETE == 4 && ECS_DELETE_LAST_POINT == 5 && CONST_DEFAULT_IDX == -1);

static_assert(sizeof(CanvasColor) == 4 && offsetof(CanvasColor, blue) == 0 && offsetof(CanvasColor, green) == 1 &&
              offsetof(CanvasColor, red) == 2 && offsetof(CanvasColor, alpha) == 3);
static_assert(sizeof(OutlineStyle) == 16 && offsetof(OutlineStyle, stroke) == 0 && offsetof(OutlineStyle, fill) == 4 &&
              offsetof(OutlineStyle, handle) == 8 && offsetof(OutlineStyle, reserved) == 12);

static_assert(sizeof(Quill::MaskRun) == 6 && alignof(Quill::MaskRun) == 2 && offsetof(Quill::MaskRun, column) == 0 &&
              offsetof(Quill::MaskRun, row) == 2 && offsetof(Quill::MaskRun, length) == 4);
static_assert(sizeof(Quill::MaskRunF) == 12 && offsetof(Quill::MaskRunF, x) == 0 && offsetof(Quill::MaskRunF, y) == 4 &&
              offsetof(Quill::MaskRunF, length) == 8);
static_assert(sizeof(platform::DibHeader) == 40 && offsetof(platform::DibHeader, size) == 0 &&
              offsetof(platform::DibHeader, width) == 4 && offsetof(platform::DibHeader, height) == 8);

TEST(Layout, BytesOfAPointAreItsSixFieldsLowestByteFirst) {
    const MPointF point = {1, 0.5F, -2.0F, 1, 0, 1};
    const auto *const bytes = reinterpret_cast<const unsigned char *>(&point);
    const std::vector<unsigned> expected = {1, 0, 0, 0, 0, 0, 0, 0x3F, 0, 0, 0, 0xC0,
                                            1, 0, 0, 0, 0, 0, 0, 0,    1, 0, 0, 0};
    EXPECT_EQ(std::vector<unsigned>(bytes, bytes + sizeof point), expected);
}

TEST(Layout, BytesOfAColourAreBlueGreenRedAlpha) {
    const CanvasColor colour = CanvasColor::fromArgb(0x11223344);
    const auto *const bytes = reinterpret_cast<const unsigned char *>(&colour);
    EXPECT_EQ(std::vector<unsigned>(bytes, bytes + 4), (std::vector<unsigned>{0x44, 0x33, 0x22, 0x11}));
}

} // namespace
