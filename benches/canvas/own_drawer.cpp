// SPDX-License-Identifier: MIT
#include <cmath>

#include "benches/canvas/drawer.h"
#include "canvas/canvas_component.h"
#include "canvas/painter.h"
#include "platform/com_pointer.h"

namespace bench {
namespace {

using canvas::testing::Scene;

class OwnDrawer final : public Drawer {
  public:
    const char *name() const override { return "own"; }
    void resize(int width, int height) override {
        m_scene.width = static_cast<UINT>(width);
        m_scene.height = static_cast<UINT>(height);
        m_component.reset(new canvas::CanvasComponent);
        m_component->SetSize(m_scene.width, m_scene.height, 1, 1);
        m_surface.resize(m_scene.width, m_scene.height);
        m_strokeOnly = false;
    }
    void stroke(const std::vector<MPoint> &points) override {
        m_surface.clear();
        m_outline.points.assign(points.begin(), points.end());
        m_outline.style = canvas::testing::kEditorStyle;
        m_painter.paint(m_surface, m_outline, false);
        m_strokeOnly = true;
    }
    void strokeCore(const std::vector<MPoint> &points) override { stroke(points); }
    void redraw(const Scene &scene) override {
        canvas::testing::redraw(*m_component.get(), scene);
        m_strokeOnly = false;
    }
    canvas::testing::Picture picture() override {
        if (!m_strokeOnly)
            return canvas::testing::copySurface(*m_component.get(), m_scene);
        canvas::testing::Picture picture{m_surface.width(), m_surface.height(), {}};
        picture.pixels.assign(m_surface.pixels(), m_surface.pixels() + m_surface.byteCount() / sizeof(canvas::Pixel));
        return picture;
    }

  private:
    platform::ComPointer<OverlayCanvas> m_component;
    canvas::Surface m_surface;
    canvas::OutlinePainter m_painter;
    canvas::Outline m_outline;
    Scene m_scene;
    bool m_strokeOnly = false;
};

} // namespace

std::unique_ptr<Drawer> makeOwnDrawer() {
    return std::make_unique<OwnDrawer>();
}

std::vector<HandleLine> handleLinesOf(const Scene &scene) {
    std::vector<HandleLine> lines;
    for (std::size_t i = 0; i < scene.points.size(); ++i)
        if (i % 3 != 0 && scene.points[i].handleShown != 0) {
            const std::size_t anchor = canvas::anchorOfControl(i, scene.points.size());
            if (anchor < scene.points.size())
                lines.push_back({scene.points[anchor], scene.points[i]});
        }
    return lines;
}

std::vector<Mark> marksOf(const Scene &scene) {
    std::vector<Mark> marks;
    const auto own = [&](const MPoint &point, bool round, canvas::Pixel inside) {
        const canvas::MarkRadii radii(round ? canvas::kHandleRadius : canvas::kAnchorRadius, scene.scale);
        marks.push_back({point, round, 2.0 * radii.outer + 1, canvas::kDarkRing});
        marks.push_back({point, round, 2.0 * radii.opaque() + 1, canvas::kLightRing});
        marks.push_back({point, round, 2.0 * (radii.opaque() - radii.ring) + 1, inside});
    };
    const auto given = [&](const MPoint &point, int base, const CanvasColor &color) {
        const double size = std::floor(static_cast<float>(base) * scene.scale + 0.5F);
        marks.push_back({point, point.type != kAnchorPoint, size, canvas::toPixel(color)});
    };
    for (std::size_t i = 0; i < scene.points.size(); i += 3)
        own(scene.points[i], false, canvas::toPixel(canvas::testing::kEditorStyle.stroke));
    for (const HandleLine &line : handleLinesOf(scene))
        own(line.control, true, canvas::toPixel(canvas::testing::kEditorStyle.handle));
    if (scene.hover == canvas::testing::Hover::Point) {
        given(scene.points[scene.hoverIndex], 9, canvas::testing::kMarkerCyan);
        given(scene.points[scene.hoverIndex], 3, canvas::testing::kMarkerBlack);
    }
    for (const std::size_t index : scene.selected) {
        given(scene.points[index], 9, canvas::testing::kMarkerBlack);
        given(scene.points[index], 7, canvas::testing::kMarkerCyan);
    }
    return marks;
}

} // namespace bench
