// SPDX-License-Identifier: MIT
#include <cairo.h>
#include <cstring>
#include <numbers>

#include "benches/canvas/drawer.h"

namespace bench {
namespace {

using canvas::Pixel;
using canvas::testing::Picture;
using canvas::testing::Scene;

// Cairo puts pixel centres at one half.
constexpr double kCentre = 0.5;

class CairoDrawer final : public Drawer {
  public:
    ~CairoDrawer() override { release(); }

    const char *name() const override { return "cairo"; }
    void resize(int width, int height) override {
        release();
        m_surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height);
        m_context = cairo_create(m_surface);
        cairo_set_line_join(m_context, CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_cap(m_context, CAIRO_LINE_CAP_ROUND);
    }
    void stroke(const std::vector<MPoint> &points) override { strokeOutline(points, 1, true); }
    void strokeCore(const std::vector<MPoint> &points) override { strokeOutline(points, 1, false); }
    void clear() {
        cairo_surface_flush(m_surface);
        std::memset(cairo_image_surface_get_data(m_surface), 0, byteCount());
        cairo_surface_mark_dirty(m_surface);
    }
    void redraw(const Scene &scene) override {
        clear();
        if (scene.isMask) {
            addOutline(scene.points);
            cairo_set_fill_rule(m_context, CAIRO_FILL_RULE_EVEN_ODD);
            setColor(canvas::toPixel(canvas::testing::kEditorStyle.fill));
            cairo_fill(m_context);
        }
        strokeOutline(scene.points, scene.scale, true);
        for (const HandleLine &line : handleLinesOf(scene)) {
            cairo_move_to(m_context, line.anchor.x + kCentre, line.anchor.y + kCentre);
            cairo_line_to(m_context, line.control.x + kCentre, line.control.y + kCentre);
        }
        strokePath(canvas::handleLook(canvas::testing::kEditorStyle, scene.scale), true);
        for (const Mark &mark : marksOf(scene)) {
            const double x = mark.point.x + kCentre;
            const double y = mark.point.y + kCentre;
            if (mark.round)
                cairo_arc(m_context, x, y, mark.size / 2, 0, 2 * std::numbers::pi);
            else
                cairo_rectangle(m_context, x - mark.size / 2, y - mark.size / 2, mark.size, mark.size);
            setColor(mark.color);
            cairo_fill(m_context);
        }
    }
    Picture picture() override {
        cairo_surface_flush(m_surface);
        Picture picture{cairo_image_surface_get_width(m_surface), cairo_image_surface_get_height(m_surface), {}};
        picture.pixels.resize(byteCount() / sizeof(Pixel));
        std::memcpy(picture.pixels.data(), cairo_image_surface_get_data(m_surface), byteCount());
        for (Pixel &pixel : picture.pixels)
            pixel = straight(pixel);
        return picture;
    }

  private:
    static Pixel straight(Pixel premultiplied) {
        const std::uint32_t alpha = premultiplied >> 24;
        if (alpha == 0)
            return 0;
        Pixel result = alpha << 24;
        for (int shift = 0; shift < 24; shift += 8)
            result |= std::min(((premultiplied >> shift & 255) * 255 + alpha / 2) / alpha, 255U) << shift;
        return result;
    }

    std::size_t byteCount() const {
        return static_cast<std::size_t>(cairo_image_surface_get_stride(m_surface)) *
               static_cast<std::size_t>(cairo_image_surface_get_height(m_surface));
    }
    void setColor(Pixel color) {
        const auto part = [color](int shift) { return static_cast<double>(color >> shift & 255) / 255; };
        cairo_set_source_rgba(m_context, part(16), part(8), part(0), part(24));
    }
    void addOutline(const std::vector<MPoint> &points) {
        const auto x = [&](std::size_t i) { return points[i % points.size()].x + kCentre; };
        const auto y = [&](std::size_t i) { return points[i % points.size()].y + kCentre; };
        cairo_move_to(m_context, x(0), y(0));
        for (std::size_t i = 0; i + 2 < points.size(); i += 3)
            cairo_curve_to(m_context, x(i + 1), y(i + 1), x(i + 2), y(i + 2), x(i + 3), y(i + 3));
        cairo_close_path(m_context);
    }
    void strokePath(const canvas::StrokeLook &look, bool withEdge) {
        if (withEdge) {
            cairo_set_line_width(m_context, 2.0 * static_cast<double>(look.edgeHalfWidth));
            setColor(look.edge);
            cairo_stroke_preserve(m_context);
        }
        cairo_set_line_width(m_context, 2.0 * static_cast<double>(look.coreHalfWidth));
        setColor(look.core);
        cairo_stroke(m_context);
    }
    void strokeOutline(const std::vector<MPoint> &points, float scale, bool withEdge) {
        addOutline(points);
        strokePath(canvas::outlineLook(canvas::testing::kEditorStyle, scale), withEdge);
    }
    void release() {
        cairo_destroy(m_context);
        cairo_surface_destroy(m_surface);
    }

    cairo_surface_t *m_surface = nullptr;
    cairo_t *m_context = nullptr;
};

} // namespace

std::unique_ptr<Drawer> makeCairoDrawer() {
    return std::make_unique<CairoDrawer>();
}

} // namespace bench
