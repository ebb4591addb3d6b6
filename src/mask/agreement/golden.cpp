// SPDX-License-Identifier: MIT
// The recorded and computed vectors that the tests hold the portable engine to, asked of the platform itself.

#include "mask/agreement/findings.h"
#include "mask/agreement/picture.h"
#include "mask/golden_vectors_test.h"
#include "platform/native_raster.h"

namespace agreement {
namespace {

using Quill::RasterEngine;
using Quill::test::XY;

std::vector<MPoint> pointsOf(const std::vector<XY> &places) {
    std::vector<MPoint> points;
    for (const XY &place : places)
        points.push_back({static_cast<std::uint32_t>(points.size() % 3 == 0 ? kAnchorPoint : kControlPoint), place.x,
                          place.y, 0, 0, 0});
    return points;
}

/// As in "1: 1-3; 2: 0-0 4-5": inclusive columns, rows without runs left out.
std::string rowsOf(const Picture &picture, int width, int height) {
    std::string text;
    for (int y = 0; y < height; ++y) {
        std::string row;
        for (int x = 0; x < width; ++x) {
            if (!picture.isIn(x, y))
                continue;
            const int first = x;
            while (x + 1 < width && picture.isIn(x + 1, y))
                ++x;
            row += " " + std::to_string(first) + "-" + std::to_string(x);
        }
        if (!row.empty())
            text += (text.empty() ? "" : "; ") + std::to_string(y) + ":" + row;
    }
    return text;
}

class GoldenSection {
  public:
    GoldenSection(const char *name, Findings &findings) : m_section{name, 0, 0, "", true}, m_findings(findings) {}

    void expect(const char *name, bool agrees) {
        ++m_section.compared;
        if (agrees)
            return;
        ++m_section.differing;
        m_findings.place(m_section.name.c_str(), name);
    }
    void finish(bool judged) {
        m_section.held = !judged || m_section.differing == 0;
        m_findings.add(m_section);
    }

  private:
    Section m_section;
    Findings &m_findings;
};

template <typename Golden>
bool fillsAs(const Golden &golden, Figure figure, const std::vector<XY> &places) {
    Picture picture(golden.width, golden.height);
    picture.draw(RasterEngine::Native, figure, pointsOf(places));
    return rowsOf(picture, golden.width, golden.height) == golden.rows;
}

bool flattensAs(const Quill::test::GoldenCurve &golden) {
    std::vector<platform::PathPosition> chain;
    for (const XY &place : golden.controls)
        chain.push_back({static_cast<float>(place.x), static_cast<float>(place.y)});
    std::vector<platform::PathPosition> expected{chain[0]};
    for (const Quill::FixedPoint &vertex : golden.vertices)
        expected.push_back({static_cast<float>(vertex.x) / 16, static_cast<float>(vertex.y) / 16});
    std::vector<platform::PathPosition> vertices;
    return platform::nativeFlattenChain(chain, 0.25F, vertices) && vertices == expected;
}

bool flattensAs(const Quill::test::RecordedChain &recorded) {
    const auto position = [](const Quill::test::Position &p) {
        return platform::PathPosition{static_cast<float>(p.x), static_cast<float>(p.y)};
    };
    std::vector<platform::PathPosition> chain;
    for (const Quill::test::Position &p : recorded.chain)
        chain.push_back(position(p));
    std::vector<platform::PathPosition> vertices;
    if (!platform::nativeFlattenChain(chain, 1.0F, vertices) || vertices.size() != recorded.count)
        return false;
    for (std::size_t at = 0; at < recorded.first.size(); ++at)
        if (!(vertices[at] == position(recorded.first[at])))
            return false;
    return true;
}

} // namespace

void compareGolden(const Options &options, Findings &findings) {
    const bool judged = options.tolerance == 0;
    GoldenSection polygons("golden polygons", findings);
    for (const auto &golden : Quill::test::goldenPolygons())
        polygons.expect(golden.name, fillsAs(golden, Figure::Polygon, golden.vertices));
    polygons.finish(true);
    GoldenSection outlines("golden outlines", findings);
    for (const auto &golden : Quill::test::goldenOutlines())
        outlines.expect(golden.name, fillsAs(golden, Figure::Outline, golden.points));
    outlines.finish(judged);
    GoldenSection curves("golden segments", findings);
    for (const auto &golden : Quill::test::goldenCurves())
        curves.expect(golden.name, flattensAs(golden));
    for (const auto &recorded : Quill::test::recordedChains())
        curves.expect(recorded.name, flattensAs(recorded));
    curves.finish(judged);
    GoldenSection samples("golden samples", findings);
    for (const auto &golden : Quill::test::goldenSamples()) {
        platform::PixelPoint controls[4];
        for (std::size_t at = 0; at < 4; ++at)
            controls[at] = {golden.controls[at].x, golden.controls[at].y};
        std::vector<platform::PixelPoint> native;
        if (!platform::nativeFlattenBezier(controls, 1.0F / static_cast<float>(golden.density), native))
            continue; // said once, where random segments are sampled
        std::vector<platform::PixelPoint> expected;
        for (const XY &sample : golden.samples)
            expected.push_back({sample.x, sample.y});
        samples.expect(golden.name, native == expected);
    }
    samples.finish(judged);
}

} // namespace agreement
