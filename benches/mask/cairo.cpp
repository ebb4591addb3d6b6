// SPDX-License-Identifier: MIT
// cairo without anti-aliasing on an 8-bit surface, then a scan: it hands out no spans.
#include <cairo.h>

#include <cstring>

#include "peers.h"

namespace bench {
namespace {

class Cairo : public Rasterizer {
  public:
    Cairo(int width, int height)
        : m_surface(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height)), m_context(cairo_create(m_surface)),
          m_width(width), m_height(height) {
        cairo_set_antialias(m_context, CAIRO_ANTIALIAS_NONE);
        cairo_set_fill_rule(m_context, CAIRO_FILL_RULE_EVEN_ODD);
    }
    ~Cairo() override {
        cairo_destroy(m_context);
        cairo_surface_destroy(m_surface);
    }

    void encode(const Outline &outline, Runs &runs) override {
        unsigned char *pixels = cairo_image_surface_get_data(m_surface);
        const int stride = cairo_image_surface_get_stride(m_surface);
        std::memset(pixels, 0, static_cast<std::size_t>(stride) * static_cast<std::size_t>(m_height));
        cairo_surface_mark_dirty(m_surface);
        cairo_new_path(m_context);
        cairo_move_to(m_context, outline[0].x, outline[0].y);
        forEachSegment(outline, [&](const MPoint &, const MPoint &b, const MPoint &c, const MPoint &d) {
            cairo_curve_to(m_context, b.x, b.y, c.x, c.y, d.x, d.y);
        });
        cairo_close_path(m_context);
        cairo_fill(m_context);
        cairo_surface_flush(m_surface);
        runs.clear();
        appendRuns(pixels, stride, m_width, m_height, runs);
    }

  private:
    cairo_surface_t *m_surface;
    cairo_t *m_context;
    int m_width;
    int m_height;
};

} // namespace

std::unique_ptr<Rasterizer> makeCairo(int width, int height) {
    return std::make_unique<Cairo>(width, height);
}

} // namespace bench
