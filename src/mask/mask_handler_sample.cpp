// SPDX-License-Identifier: MIT
#include "mask/mask_handler.h"
#include "mask/no_throw.h"
#include "mask/outline_segments.h"
#include "mask/sample.h"
#include "mask/scratch.h"
#include "support/diag_log.h"

namespace Quill {
namespace {

constexpr int kMinSampledPoints = 2;

/// Fills the inner lists one after the other and keeps the memory of those that are already there.
class SegmentWriter {
  public:
    SegmentWriter(const MPoint *points, int count, int density, VertexBuffer &vertices, SegmentSamples &segments)
        : m_points(points), m_count(count), m_density(density), m_vertices(vertices), m_segments(segments) {}

    void addLine(int from, int to) { MaskHandler::m_fnGetLinePoints(m_points[from], m_points[to], 0, &next()); }

    void addCurve(int start, int end) {
        std::vector<MPoint> &samples = next();
        if (!isWholeCurve(start, end, m_count))
            return;
        const MPoint *const controls[4] = {m_points + start, m_points + start + 1, m_points + start + 2,
                                           m_points + end};
        sampleSegment(maskEngine(), controls, m_density, m_vertices, samples);
    }

    void finish() { m_segments.resize(m_written); }

  private:
    std::vector<MPoint> &next() {
        if (m_written == m_segments.size())
            m_segments.emplace_back();
        std::vector<MPoint> &samples = m_segments[m_written++];
        samples.clear();
        return samples;
    }

    const MPoint *m_points;
    int m_count;
    int m_density;
    VertexBuffer &m_vertices;
    SegmentSamples &m_segments;
    std::size_t m_written = 0;
};

void sampleSegments(const MPoint *points, int count, int density, SegmentSamples &segments) {
    const BorrowedScratch scratch;
    SegmentWriter writer(points, count, density, scratch->polyline, segments);
    forEachSegment(
        points, count, scratch->anchors, [&writer](int from, int to) { writer.addLine(from, to); },
        [&writer](int start, int end) { writer.addCurve(start, end); });
    writer.finish();
}

} // namespace

HRESULT MaskHandler::GenAllPoints(const MPoint *points, int count, int density, int, SegmentSamples *segments) {
    if (!points) {
        DiagLogPrint("Quill::MaskHandler::GenAllPoints Null Pointer : points\n");
        return E_POINTER;
    }
    if (!segments) {
        DiagLogPrint("Quill::MaskHandler::GenAllPoints Null Pointer : allpoints\n");
        return E_POINTER;
    }
    if (count < kMinSampledPoints)
        return E_FAIL;
    return withoutThrowing([&] { sampleSegments(points, count, density, *segments); });
}

} // namespace Quill
