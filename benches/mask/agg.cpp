// SPDX-License-Identifier: MIT
// Anti-Grain Geometry: curves, cells, and binary scanlines taken as spans; no surface.
#include <agg_conv_curve.h>
#include <agg_gamma_functions.h>
#include <agg_path_storage.h>
#include <agg_rasterizer_scanline_aa.h>
#include <agg_scanline_bin.h>

#include "peers.h"

namespace bench {
namespace {

class Agg : public Rasterizer {
  public:
    Agg(int width, int height) : m_height(height) {
        m_rasterizer.clip_box(0, 0, width, height);
        m_rasterizer.filling_rule(agg::fill_even_odd);
        m_rasterizer.gamma(agg::gamma_threshold(0.5));
    }

    void encode(const Outline &outline, Runs &runs) override {
        m_path.remove_all();
        m_path.move_to(outline[0].x, outline[0].y);
        forEachSegment(outline, [&](const MPoint &, const MPoint &b, const MPoint &c, const MPoint &d) {
            m_path.curve4(b.x, b.y, c.x, c.y, d.x, d.y);
        });
        m_path.close_polygon();
        agg::conv_curve<agg::path_storage> curves(m_path);
        m_rasterizer.reset();
        m_rasterizer.add_path(curves);
        runs.clear();
        if (!m_rasterizer.rewind_scanlines())
            return;
        m_scanline.reset(m_rasterizer.min_x(), m_rasterizer.max_x());
        while (m_rasterizer.sweep_scanline(m_scanline)) {
            auto span = m_scanline.begin();
            for (unsigned i = m_scanline.num_spans(); i > 0; --i, ++span)
                runs.push_back({static_cast<std::uint16_t>(span->x), static_cast<std::uint16_t>(m_scanline.y()),
                                static_cast<std::uint16_t>(span->len)});
        }
    }

  private:
    int m_height;
    agg::path_storage m_path;
    agg::rasterizer_scanline_aa<> m_rasterizer;
    agg::scanline_bin m_scanline;
};

} // namespace

std::unique_ptr<Rasterizer> makeAgg(int width, int height) {
    return std::make_unique<Agg>(width, height);
}

} // namespace bench
