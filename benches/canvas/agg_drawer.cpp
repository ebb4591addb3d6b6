// SPDX-License-Identifier: MIT
#include <agg_conv_curve.h>
#include <agg_conv_stroke.h>
#include <agg_ellipse.h>
#include <agg_path_storage.h>
#include <agg_pixfmt_rgba.h>
#include <agg_rasterizer_scanline_aa.h>
#include <agg_renderer_base.h>
#include <agg_renderer_scanline.h>
#include <agg_rendering_buffer.h>
#include <agg_scanline_u.h>
#include <algorithm>

#include "benches/canvas/drawer.h"

namespace bench {
namespace {

using canvas::Pixel;
using canvas::testing::Picture;
using canvas::testing::Scene;

// AGG puts pixel centres at one half.
constexpr double kCentre = 0.5;

class AggDrawer final : public Drawer {
    using PixelFormat = agg::pixfmt_bgra32_plain;
    using Base = agg::renderer_base<PixelFormat>;

  public:
    const char *name() const override { return "agg"; }
    void resize(int width, int height) override {
        m_pixels.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
        m_buffer.attach(reinterpret_cast<agg::int8u *>(m_pixels.data()), static_cast<unsigned>(width),
                        static_cast<unsigned>(height), width * 4);
        m_width = width;
        m_height = height;
        m_rasterizer.clip_box(0, 0, width, height);
    }
    void stroke(const std::vector<MPoint> &points) override { strokeOutline(points, 1, true); }
    void strokeCore(const std::vector<MPoint> &points) override { strokeOutline(points, 1, false); }
    void redraw(const Scene &scene) override {
        std::fill(m_pixels.begin(), m_pixels.end(), 0);
        if (scene.isMask) {
            addOutline(scene.points);
            agg::conv_curve<agg::path_storage> curve(m_path);
            m_rasterizer.filling_rule(agg::fill_even_odd);
            m_rasterizer.add_path(curve);
            render(canvas::toPixel(canvas::testing::kEditorStyle.fill));
            m_rasterizer.filling_rule(agg::fill_non_zero);
        }
        strokeOutline(scene.points, scene.scale, true);
        m_path.remove_all();
        for (const HandleLine &line : handleLinesOf(scene)) {
            m_path.move_to(line.anchor.x + kCentre, line.anchor.y + kCentre);
            m_path.line_to(line.control.x + kCentre, line.control.y + kCentre);
        }
        strokePath(m_path, canvas::handleLook(canvas::testing::kEditorStyle, scene.scale), true);
        for (const Mark &mark : marksOf(scene))
            drawMark(mark);
    }
    Picture picture() override { return {m_width, m_height, m_pixels}; }

  private:
    static agg::rgba8 color(Pixel pixel) { return {pixel >> 16 & 255, pixel >> 8 & 255, pixel & 255, pixel >> 24}; }

    void render(Pixel pixel) {
        PixelFormat format(m_buffer);
        Base base(format);
        agg::render_scanlines_aa_solid(m_rasterizer, m_scanline, base, color(pixel));
    }
    void addOutline(const std::vector<MPoint> &points) {
        const auto x = [&](std::size_t i) { return points[i % points.size()].x + kCentre; };
        const auto y = [&](std::size_t i) { return points[i % points.size()].y + kCentre; };
        m_path.remove_all();
        m_path.move_to(x(0), y(0));
        for (std::size_t i = 0; i + 2 < points.size(); i += 3)
            m_path.curve4(x(i + 1), y(i + 1), x(i + 2), y(i + 2), x(i + 3), y(i + 3));
        m_path.close_polygon();
    }
    template <typename Path>
    void strokePath(Path &path, const canvas::StrokeLook &look, bool withEdge) {
        agg::conv_stroke<Path> stroke(path);
        stroke.line_join(agg::round_join);
        stroke.line_cap(agg::round_cap);
        if (withEdge) {
            stroke.width(2.0 * static_cast<double>(look.edgeHalfWidth));
            m_rasterizer.add_path(stroke);
            render(look.edge);
        }
        stroke.width(2.0 * static_cast<double>(look.coreHalfWidth));
        m_rasterizer.add_path(stroke);
        render(look.core);
    }
    void strokeOutline(const std::vector<MPoint> &points, float scale, bool withEdge) {
        addOutline(points);
        agg::conv_curve<agg::path_storage> curve(m_path);
        strokePath(curve, canvas::outlineLook(canvas::testing::kEditorStyle, scale), withEdge);
    }
    void drawMark(const Mark &mark) {
        const double x = mark.point.x + kCentre;
        const double y = mark.point.y + kCentre;
        const double half = mark.size / 2;
        if (mark.round) {
            agg::ellipse circle(x, y, half, half);
            m_rasterizer.add_path(circle);
        } else {
            m_rasterizer.move_to_d(x - half, y - half);
            m_rasterizer.line_to_d(x + half, y - half);
            m_rasterizer.line_to_d(x + half, y + half);
            m_rasterizer.line_to_d(x - half, y + half);
        }
        render(mark.color);
    }

    std::vector<Pixel> m_pixels;
    int m_width = 0;
    int m_height = 0;
    agg::rendering_buffer m_buffer;
    agg::rasterizer_scanline_aa<> m_rasterizer;
    agg::scanline_u8 m_scanline;
    agg::path_storage m_path;
};

} // namespace

std::unique_ptr<Drawer> makeAggDrawer() {
    return std::make_unique<AggDrawer>();
}

} // namespace bench
