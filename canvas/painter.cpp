// SPDX-License-Identifier: MIT
#include "canvas/painter.h"

#include <cmath>
#include <new>

#include "canvas/look.h"

namespace canvas {
namespace {

// A chain of fewer points holds no mask, whatever its flag says.
constexpr std::size_t kFewestMaskPoints = 9;

double toPixels(std::int32_t fixed) {
    return static_cast<double>(fixed) / Quill::kUnitsPerPixel;
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

Stamp makeMark(MarkShape shape, float radius, Pixel inside, float scale) {
    const int outer = scaled(radius, scale);
    const int ring = scaled(1, scale) > 0 ? scaled(1, scale) : 1;
    const MarkLayer layers[] = {{2.0 * outer + 1, kDarkRing},
                                {2.0 * (outer - ring) + 1, kLightRing},
                                {2.0 * (outer - 2 * ring) + 1, inside}};
    return Stamp(shape, layers);
}

} // namespace

HRESULT OutlinePainter::resize(int width, int height) {
    return m_stroker.resize(width, height);
}

HRESULT OutlinePainter::paint(Surface &surface, const Outline &outline, bool withMarks) {
    try {
        const StrokeLook look = outlineLook(outline.style, outline.scale);
        const int margin = static_cast<int>(std::ceil(look.reach())) + 1;
        flattenOutline(outline.points, surface.width(), surface.height(), margin, m_path);
    } catch (const std::bad_alloc &) {
        return E_OUTOFMEMORY;
    }
    HRESULT result = S_OK;
    if (outline.isMask && m_path.maskable && outline.points.size() >= kFewestMaskPoints)
        result = m_fill.fill(surface, std::span(m_path.vertices.data(), m_path.vertices.size()), toPixel(outline.style.fill));
    paintLine(surface, outline);
    if (withMarks) {
        paintHandleLines(surface, outline);
        paintMarks(surface, outline);
    }
    return result;
}

void OutlinePainter::paintLine(Surface &surface, const Outline &outline) {
    const StrokeLook look = outlineLook(outline.style, outline.scale);
    m_stroker.begin(look.reach());
    for (std::size_t i = 0; i + 1 < m_path.vertices.size(); ++i) {
        const Quill::FixedPoint from = m_path.vertices[i];
        const Quill::FixedPoint to = m_path.vertices[i + 1];
        m_stroker.addLine(toPixels(from.x), toPixels(from.y), toPixels(to.x), toPixels(to.y));
    }
    m_stroker.paint(surface, makePalette(look));
}

void OutlinePainter::paintHandleLines(Surface &surface, const Outline &outline) {
    const StrokeLook look = handleLook(outline.style, outline.scale);
    m_stroker.begin(look.reach());
    forEachShownHandle(outline.points, [this](const MPoint &anchor, const MPoint &control) {
        m_stroker.addLine(anchor.x, anchor.y, control.x, control.y);
    });
    m_stroker.paint(surface, makePalette(look));
}

void OutlinePainter::paintMarks(Surface &surface, const Outline &outline) {
    const Stamp anchorMark = makeMark(MarkShape::Square, kAnchorRadius, toPixel(outline.style.stroke), outline.scale);
    const Stamp handleMark = makeMark(MarkShape::Round, kHandleRadius, toPixel(outline.style.handle), outline.scale);
    for (std::size_t i = 0; i < outline.points.size(); ++i)
        if (isAnchor(i))
            anchorMark.paint(surface, outline.points[i].x, outline.points[i].y);
    forEachShownHandle(outline.points, [&](const MPoint &, const MPoint &control) {
        handleMark.paint(surface, control.x, control.y);
    });
}

} // namespace canvas
