// SPDX-License-Identifier: MIT
#include "mask/mask_encoder.h"

#include "mask/encode.h"
#include "mask/outline_figure.h"

namespace Quill {
namespace {

MPoint point(std::uint32_t type, int x, int y) {
    MPoint result;
    result.type = type;
    result.x = x;
    result.y = y;
    return result;
}

/// A quarter, or three, of the way: where the controls of straight segments stand.
int along(int from, int to, int quarters) {
    return static_cast<int>(from + (std::int64_t{to} - from) * quarters / 4);
}

} // namespace

OutlineBuilder::OutlineBuilder(int x, int y) {
    m_points.push_back(point(kAnchorPoint, x, y));
}

OutlineBuilder &OutlineBuilder::lineTo(int x, int y) {
    const MPoint from = m_points.back();
    m_points.push_back(point(kControlPoint, along(from.x, x, 1), along(from.y, y, 1)));
    m_points.push_back(point(kControlPoint, along(from.x, x, 3), along(from.y, y, 3)));
    m_points.push_back(point(kAnchorPoint, x, y));
    return *this;
}

OutlineBuilder &OutlineBuilder::curveTo(int controlX1, int controlY1, int controlX2, int controlY2, int x, int y) {
    m_points.back().curveOut = 1;
    m_points.push_back(point(kControlPoint, controlX1, controlY1));
    m_points.push_back(point(kControlPoint, controlX2, controlY2));
    m_points.push_back(point(kAnchorPoint, x, y));
    m_points.back().curveIn = 1;
    return *this;
}

std::vector<MPoint> OutlineBuilder::close() const {
    OutlineBuilder closed = *this;
    const MPoint &start = m_points.front();
    const MPoint &end = m_points.back();
    const bool isBack = m_points.size() > 1 && end.x == start.x && end.y == start.y;
    if (!isBack)
        closed.lineTo(start.x, start.y);
    // The end of the closing segment is the start, which stands first.
    closed.m_points.front().curveIn = closed.m_points.back().curveIn;
    closed.m_points.pop_back();
    return closed.m_points;
}

struct MaskEncoder::State {
    RasterScratch scratch;
    int width = 0;
    int height = 0;
    bool invert = false;
    const std::uint8_t *exclusion = nullptr;

    EncodeContext context() { return {scratch, EncodeRoute::Direct, RasterEngine::Portable}; }

    /// Too few points become an outline without area, so that rows are counted and inverted as ever.
    EncodeJob job(std::span<const MPoint> outline) const {
        static const MPoint nothing[kMinOutlinePoints] = {};
        const bool enough = outline.size() >= kMinOutlinePoints;
        return {enough ? outline.data() : nothing,
                enough ? static_cast<int>(outline.size()) : kMinOutlinePoints,
                width,
                height,
                invert,
                exclusion};
    }
};

MaskEncoder::MaskEncoder(int width, int height) : m_state(std::make_unique<State>()) {
    resize(width, height);
}
MaskEncoder::~MaskEncoder() = default;
MaskEncoder::MaskEncoder(MaskEncoder &&) noexcept = default;
MaskEncoder &MaskEncoder::operator=(MaskEncoder &&) noexcept = default;

void MaskEncoder::resize(int width, int height) {
    m_state->width = width;
    m_state->height = height;
}

void MaskEncoder::invert(bool on) {
    m_state->invert = on;
}

void MaskEncoder::exclude(const std::uint8_t *map) {
    m_state->exclusion = map;
}

std::span<const MaskRun> MaskEncoder::runs(std::span<const MPoint> outline) {
    return encodeRuns(m_state->context(), m_state->job(outline));
}

std::span<const std::uint16_t> MaskEncoder::rowList(std::span<const MPoint> outline) {
    return encodeRowList(m_state->context(), m_state->job(outline));
}

std::span<const MaskRunF> MaskEncoder::fractions(std::span<const MPoint> outline) {
    return encodeFractions(m_state->context(), m_state->job(outline), 0, 0);
}

} // namespace Quill
