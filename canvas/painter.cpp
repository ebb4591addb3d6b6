// SPDX-License-Identifier: MIT
#include "canvas/painter.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "canvas/look.h"

namespace canvas {
namespace {

double toPixels(std::int32_t fixed) {
    return static_cast<double>(fixed) / Quill::kUnitsPerPixel;
}

Position toPosition(const MPoint &point) {
    return {static_cast<double>(point.x), static_cast<double>(point.y)};
}

bool isAnchor(std::size_t index) {
    return index % 3 == 0;
}

template <typename Visit>
void forEachShownHandle(const std::vector<MPoint> &points, Visit visit) {
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (isAnchor(i) || points[i].handleShown == 0)
            continue;
        const std::size_t anchor = anchorOfControl(i, points.size());
        if (anchor < points.size())
            visit(points[anchor], points[i]);
    }
}

// From outside inwards: dark ring, light ring, colour.
std::array<MarkLayer, 3> markLayers(const MarkRadii &radii, const CanvasColor &inside) {
    const auto size = [](int half) { return static_cast<std::uint32_t>(2 * half + 1); };
    return {{{size(radii.outer), kDarkRing},
             {size(radii.opaque()), kLightRing},
             {size(radii.opaque() - radii.ring), toPixel(inside)}}};
}

} // namespace

void OutlinePainter::paint(Surface &surface, const Outline &outline, bool withMarks) {
    if (surface.empty() || outline.points.empty())
        return;
    if (outline.isMask)
        m_fill.fill(surface, outline.points, toPixel(outline.style.fill));
    paintLine(surface, outline);
    if (withMarks) {
        paintHandleLines(surface, outline);
        paintMarks(surface, outline);
    }
}

void OutlinePainter::paintMark(Surface &surface, const MPoint &point, std::uint32_t size, Pixel color) {
    if (surface.empty())
        return;
    const MarkShape shape = point.type == kAnchorPoint ? MarkShape::Square : MarkShape::Round;
    m_marks.paint(surface, shape, point.x, point.y, {size, color});
}

void OutlinePainter::paintLine(Surface &surface, const Outline &outline) {
    const StrokeLook look = outlineLook(outline.style, outline.scale);
    const int margin = static_cast<int>(std::ceil(look.reach())) + 1;
    flattenOutline(outline.points, surface.width(), surface.height(), margin, m_path);
    m_positions.clear();
    for (const Quill::FixedPoint &vertex : m_path.vertices)
        m_positions.push_back({toPixels(vertex.x), toPixels(vertex.y)});
    // The flattener may end a segment a little off its end point.
    if (m_path.closed && m_positions.back() != m_positions.front())
        m_positions.push_back(m_positions.front());
    m_linePalette.prepare(look);
    m_stroker.begin(surface, look);
    m_stroker.addPolyline(m_positions, m_path.closed);
    m_stroker.paint(m_linePalette);
}

void OutlinePainter::paintHandleLines(Surface &surface, const Outline &outline) {
    const StrokeLook look = handleLook(outline.style, outline.scale);
    m_handlePalette.prepare(look);
    m_stroker.begin(surface, look);
    const double hidden = hiddenByMarks(look, outline.scale);
    forEachShownHandle(outline.points, [&](const MPoint &anchor, const MPoint &control) {
        m_stroker.addLine(toPosition(anchor), toPosition(control), hidden);
    });
    m_stroker.paint(m_handlePalette);
}

void OutlinePainter::paintMarks(Surface &surface, const Outline &outline) {
    const auto anchorLayers = markLayers({kAnchorRadius, outline.scale}, outline.style.stroke);
    const Stamp &anchorMark = m_marks.stamp(MarkShape::Square, anchorLayers);
    for (std::size_t i = 0; i < outline.points.size(); ++i)
        if (isAnchor(i))
            anchorMark.paint(surface, outline.points[i].x, outline.points[i].y);
    const auto handleLayers = markLayers({kHandleRadius, outline.scale}, outline.style.handle);
    const Stamp &handleMark = m_marks.stamp(MarkShape::Round, handleLayers);
    forEachShownHandle(outline.points,
                       [&](const MPoint &, const MPoint &control) { handleMark.paint(surface, control.x, control.y); });
}

} // namespace canvas
