// SPDX-License-Identifier: MIT
#include "canvas/testing/scenes.h"

#include <cmath>
#include <cstdlib>

#include "canvas/canvas_component.h"
#include "platform/com_pointer.h"

namespace canvas::testing {
namespace {

int scaledSize(int base, float scale) {
    return static_cast<int>(std::floor(static_cast<float>(base) * scale + 0.5F));
}

MPoint along(const MPoint &from, const MPoint &to, int quarters) {
    MPoint point;
    point.type = kControlPoint;
    point.x = from.x + (to.x - from.x) * quarters / 4;
    point.y = from.y + (to.y - from.y) * quarters / 4;
    return point;
}

// A point of the segment that leaves an anchor, half way.
MPoint middleOfSegment(const std::vector<MPoint> &points, std::size_t anchor) {
    const MPoint &end = points[anchor + 3 < points.size() ? anchor + 3 : 0];
    MPoint middle = points[anchor];
    middle.x = (points[anchor].x + 3 * points[anchor + 1].x + 3 * points[anchor + 2].x + end.x) / 8;
    middle.y = (points[anchor].y + 3 * points[anchor + 1].y + 3 * points[anchor + 2].y + end.y) / 8;
    return middle;
}

} // namespace

std::vector<MPoint> polygon(const std::vector<std::pair<int, int>> &anchors, bool closed) {
    std::vector<MPoint> points;
    for (std::size_t i = 0; i < anchors.size(); ++i) {
        MPoint anchor;
        anchor.x = anchors[i].first;
        anchor.y = anchors[i].second;
        points.push_back(anchor);
        if (!closed && i + 1 == anchors.size())
            break;
        MPoint next;
        next.x = anchors[(i + 1) % anchors.size()].first;
        next.y = anchors[(i + 1) % anchors.size()].second;
        points.push_back(along(anchor, next, 1));
        points.push_back(along(anchor, next, 3));
    }
    return points;
}

std::vector<MPoint> chain(const std::vector<std::pair<int, int>> &positions) {
    std::vector<MPoint> points;
    for (std::size_t i = 0; i < positions.size(); ++i) {
        MPoint point;
        point.type = i % 3 == 0 ? kAnchorPoint : kControlPoint;
        point.x = positions[i].first;
        point.y = positions[i].second;
        points.push_back(point);
    }
    return points;
}

std::vector<MPoint> blob(int anchors, double x, double y, double radius, double wobble) {
    constexpr double kTurn = 6.283185307179586;
    std::vector<std::pair<int, int>> positions;
    const auto at = [&](double angle, double distance, double tangent) {
        const double px = x + distance * std::cos(angle) - tangent * std::sin(angle);
        const double py = y + distance * std::sin(angle) + tangent * std::cos(angle);
        positions.emplace_back(static_cast<int>(std::lround(px)), static_cast<int>(std::lround(py)));
    };
    const double handle = radius * kTurn / anchors / 3;
    const auto distanceOf = [&](int i) {
        return radius * (1 + wobble * (i % 2 == 0 ? 1 : -1) * (i % 3 == 0 ? 1 : 0.5));
    };
    for (int i = 0; i < anchors; ++i) {
        const double angle = kTurn * i / anchors;
        const double next = kTurn * (i + 1) / anchors;
        at(angle, distanceOf(i), 0);
        at(angle, distanceOf(i), handle);
        at(next, distanceOf((i + 1) % anchors), -handle);
    }
    return chain(positions);
}

void showHandles(std::vector<MPoint> &points, std::size_t anchor) {
    points[anchor + 1].handleShown = 1;
    points[(anchor + points.size() - 1) % points.size()].handleShown = 1;
}

void showAllHandles(std::vector<MPoint> &points) {
    for (MPoint &point : points)
        point.handleShown = point.type == kControlPoint;
}

std::vector<Scene> goldenScenes() {
    const std::vector<MPoint> round = blob(6, 80, 60, 42);
    const std::vector<MPoint> square = polygon({{40, 30}, {120, 30}, {120, 90}, {40, 90}}, true);
    std::vector<MPoint> roundWithHandles = round;
    showHandles(roundWithHandles, 3);
    std::vector<MPoint> roundWithAllHandles = round;
    showAllHandles(roundWithAllHandles);
    const std::vector<MPoint> eight = chain({{30, 60}, {30, 10}, {130, 110}, {130, 60}, {130, 10}, {30, 110}});
    const std::vector<MPoint> eightOfFour = chain({{30, 35},
                                                   {60, 35},
                                                   {100, 85},
                                                   {130, 85},
                                                   {150, 85},
                                                   {150, 35},
                                                   {130, 35},
                                                   {100, 35},
                                                   {60, 85},
                                                   {30, 85},
                                                   {10, 85},
                                                   {10, 35}});
    std::vector<MPoint> dense = blob(24, 80, 60, 46, 0.12);
    showAllHandles(dense);
    std::vector<MPoint> large = blob(24, 1920, 1080, 800, 0.12);
    showAllHandles(large);

    std::vector<Scene> scenes;
    const auto add = [&](Scene scene) { scenes.push_back(std::move(scene)); };
    add({.name = "01_one_anchor", .points = chain({{80, 60}})});
    add({.name = "02_first_segment", .points = polygon({{30, 80}, {120, 40}}, false)});
    add({.name = "03_drawing",
         .points = polygon({{20, 90}, {50, 25}, {95, 70}, {140, 20}, {130, 100}}, false),
         .hover = Hover::Point,
         .hoverIndex = 0});
    add({.name = "04_drawing_curved",
         .points = chain({{15, 95}, {15, 20}, {70, 10}, {80, 60}, {90, 110}, {145, 100}, {145, 25}})});
    add({.name = "05_closed", .points = round});
    add({.name = "06_mask", .points = round, .isMask = true});
    add({.name = "07_square_mask", .points = square, .isMask = true});
    add({.name = "08_hovered_point", .points = round, .isMask = true, .hover = Hover::Point, .hoverIndex = 6});
    add({.name = "09_hovered_line", .points = round, .isMask = true, .hover = Hover::Line, .hoverIndex = 6});
    add({.name = "10_handles", .points = roundWithHandles, .isMask = true, .selected = {3}});
    add({.name = "11_hovered_handle",
         .points = roundWithHandles,
         .isMask = true,
         .hover = Hover::Point,
         .hoverIndex = 4});
    add({.name = "12_selected_handle", .points = roundWithHandles, .isMask = true, .selected = {4}});
    add({.name = "13_all_handles", .points = roundWithAllHandles, .isMask = true});
    add({.name = "14_several_selected", .points = round, .isMask = true, .selected = {0, 3, 9, 15, 4000}});
    add({.name = "15_rubber_band", .points = round, .isMask = true, .band = {60, 45, 80, 60}, .selected = {0, 3, 15}});
    add({.name = "16_rubber_band_alone", .band = {20, 20, 100, 70}});
    add({.name = "17_rubber_band_beyond", .points = square, .band = {-30, 50, 300, 200}});
    add({.name = "18_scale_half", .points = roundWithHandles, .isMask = true, .scale = 0.5F, .selected = {3, 9}});
    add({.name = "19_scale_one_and_half",
         .points = roundWithHandles,
         .isMask = true,
         .scale = 1.5F,
         .selected = {3, 9}});
    add({.name = "20_scale_two",
         .points = roundWithHandles,
         .isMask = true,
         .scale = 2,
         .hover = Hover::Line,
         .hoverIndex = 9,
         .selected = {3}});
    add({.name = "21_scale_four",
         .width = 320,
         .height = 240,
         .points =
             [] {
                 std::vector<MPoint> points = blob(6, 160, 120, 84);
                 showHandles(points, 3);
                 return points;
             }(),
         .isMask = true,
         .scale = 4,
         .selected = {3, 9}});
    add({.name = "22_uhd_right",
         .width = 3840,
         .height = 2160,
         .shown = {2580, 900, 240, 180},
         .points = large,
         .isMask = true,
         .scale = 2,
         .selected = {0, 6}});
    add({.name = "23_uhd_top",
         .width = 3840,
         .height = 2160,
         .shown = {1800, 140, 240, 180},
         .points = large,
         .isMask = true,
         .scale = 2,
         .hover = Hover::Point,
         .hoverIndex = 54});
    add({.name = "24_figure_of_eight", .points = eight});
    add({.name = "25_figure_of_eight_mask", .points = eightOfFour, .isMask = true});
    add({.name = "26_dense", .points = dense, .isMask = true, .selected = {0, 3, 6, 9, 12}});
    add({.name = "27_crossing_all_edges", .points = blob(8, 80, 60, 85), .isMask = true});
    add({.name = "28_beyond_all_edges", .points = blob(8, 80, 60, 400), .isMask = true});
    add({.name = "29_cusp_and_corners",
         .points =
             chain({{20, 100}, {200, 0}, {-60, 0}, {140, 100}, {110, 90}, {110, 90}, {80, 30}, {80, 60}, {50, 90}}),
         .isMask = true});
    add({.name = "30_sliver", .points = polygon({{10, 60}, {150, 57}, {150, 61}}, true), .isMask = true});
    add({.name = "31_all_points_equal",
         .points = chain({{80, 60}, {80, 60}, {80, 60}, {80, 60}, {80, 60}, {80, 60}, {80, 60}, {80, 60}, {80, 60}}),
         .isMask = true});
    add({.name = "32_two_anchors_closed", .points = polygon({{40, 30}, {120, 90}}, true), .isMask = true});
    add({.name = "33_hidden_points",
         .points = roundWithHandles,
         .isMask = true,
         .selected = {3, 9},
         .hidePoints = true});
    add({.name = "34_hidden_points_and_band", .points = round, .band = {60, 45, 80, 60}, .hidePoints = true});
    add({.name = "35_half_scale_all_handles", .points = roundWithAllHandles, .scale = 0.5F});
    return scenes;
}

void redraw(OverlayCanvas &canvas, const Scene &scene) {
    const auto marker = [&](const MPoint &point, int base, const CanvasColor &color) {
        canvas.DrawMarker(point, static_cast<UINT>(scaledSize(base, scene.scale)), color);
    };
    canvas.Clear();
    if (!scene.points.empty())
        canvas.DrawOutline(scene.points.data(), static_cast<INT>(scene.points.size()), kEditorStyle, scene.isMask,
                           scene.scale);
    if (scene.hover == Hover::Point) {
        marker(scene.points[scene.hoverIndex], 9, kMarkerCyan);
        marker(scene.points[scene.hoverIndex], 3, kMarkerBlack);
    } else if (scene.hover == Hover::Line) {
        const MPoint point = middleOfSegment(scene.points, scene.hoverIndex);
        marker(point, 9, kMarkerBlack);
        marker(point, 7, kMarkerCyan);
        marker(point, 3, kMarkerBlack);
    }
    if (scene.band.width != 0 && scene.band.height != 0)
        canvas.DrawRegion(scene.band, kRegionBorder, kRegionFill);
    for (const std::size_t index : scene.selected) {
        if (index >= scene.points.size())
            continue;
        marker(scene.points[index], 9, kMarkerBlack);
        marker(scene.points[index], 7, kMarkerCyan);
    }
    if (scene.hidePoints)
        canvas.HideAllPoints();
}

Picture copySurface(OverlayCanvas &canvas, const Scene &scene) {
    BYTE *buffer = nullptr;
    std::uint64_t length = 0;
    Picture picture;
    if (FAILED(canvas.GetBuffer(&buffer, &length)))
        return picture;
    const auto *const pixels = reinterpret_cast<const std::uint32_t *>(buffer);
    PixelRect part = scene.shown;
    if (part.width == 0)
        part = {0, 0, static_cast<std::int32_t>(scene.width), static_cast<std::int32_t>(scene.height)};
    picture.width = part.width;
    picture.height = part.height;
    for (int y = part.top; y < part.top + part.height; ++y) {
        const std::uint32_t *const row = pixels + static_cast<std::size_t>(y) * scene.width + part.left;
        picture.pixels.insert(picture.pixels.end(), row, row + part.width);
    }
    return picture;
}

bool longTests() {
    const char *const value = std::getenv("ORVANEL_LONG_TESTS");
    return value && *value == '1';
}

Picture render(const Scene &scene) {
    platform::ComPointer<OverlayCanvas> component(new CanvasComponent);
    component->SetSize(scene.width, scene.height, 1, 1);
    redraw(*component.get(), scene);
    return copySurface(*component.get(), scene);
}

} // namespace canvas::testing
