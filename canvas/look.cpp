// SPDX-License-Identifier: MIT
#include "canvas/look.h"

#include <algorithm>
#include <cmath>

namespace canvas {
namespace {

// Axis-parallel lines run through pixel centres: an edge that ends half way between two is crisp on them.
float snapped(float halfWidth) {
    return halfWidth < 1.5F ? halfWidth : std::floor(halfWidth) + 0.5F;
}

StrokeLook lineLook(const CanvasColor &core, float coreHalfWidth, float edgeWidth, float scale) {
    StrokeLook look;
    look.core = toPixel(core);
    look.edge = kEdgeColor;
    look.coreHalfWidth = coreHalfWidth * scale;
    look.edgeHalfWidth = snapped((coreHalfWidth + edgeWidth) * scale);
    return look;
}

} // namespace

StrokeLook outlineLook(const OutlineStyle &style, float scale) {
    return lineLook(style.stroke, kOutlineCoreHalfWidth, kOutlineEdgeWidth, scale);
}

StrokeLook handleLook(const OutlineStyle &style, float scale) {
    return lineLook(style.handle, kHandleLineCoreHalfWidth, kHandleLineEdgeWidth, scale);
}

int scaled(float length, float scale) {
    return static_cast<int>(std::floor(length * scale + 0.5F));
}

MarkRadii::MarkRadii(float radius, float scale) : outer(scaled(radius, scale)), ring(std::max(1, scaled(1, scale))) {}

double hiddenByMarks(const StrokeLook &line, float scale) {
    static_assert(alphaOf(kLightRing) == 255);
    constexpr double kMargin = 1.0 / 16;
    const double opaque = std::min(MarkRadii(kAnchorRadius, scale).opaque(), MarkRadii(kHandleRadius, scale).opaque());
    const auto reach = static_cast<double>(line.reach());
    return std::sqrt(opaque * opaque - reach * reach) - kMargin;
}

} // namespace canvas
