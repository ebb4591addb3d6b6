// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "overlay/types/overlay_canvas.h"

// States of the overlay as the editor draws them, for pictures that tests compare, people look at and benchmarks
// repeat.

namespace canvas::testing {

/// Colours and the style record that the editor passes.
inline constexpr CanvasColor kMarkerBlack = CanvasColor::fromArgb(0xFF000000);
inline constexpr CanvasColor kMarkerCyan = CanvasColor::fromArgb(0xFF4AE1E1);
inline constexpr CanvasColor kRegionBorder = CanvasColor::fromArgb(0xFF257BC9);
inline constexpr CanvasColor kRegionFill = CanvasColor::fromArgb(0x8065A5E2);
inline constexpr OutlineStyle kEditorStyle = {CanvasColor::fromArgb(0xFF00A5E2), CanvasColor::fromArgb(0x7D000078),
                                              CanvasColor::fromArgb(0xFF65A5E2), 0};

/// What the pointer is over.
enum class Hover { Nothing, Point, Line };

/// One state.
struct Scene {
    std::string name;
    UINT width = 160;
    UINT height = 120;
    PixelRect shown = {}; ///< the part that pictures keep; of width 0: all
    std::vector<MPoint> points = {};
    bool isMask = false;
    float scale = 1;
    Hover hover = Hover::Nothing;
    std::size_t hoverIndex = 0; ///< the point, or the anchor before the hovered line
    PixelRect band = {};
    std::vector<std::size_t> selected = {};
    bool hidePoints = false;
};

/// The states whose pictures are checked in.
std::vector<Scene> goldenScenes();

/// Anchor i of n on a wobbling closed curve around (x, y): 3n points. The same on every machine.
std::vector<MPoint> blob(int anchors, double x, double y, double radius, double wobble = 0.25);

/// Sets handleShown on the handles of an anchor, or of all of them.
void showHandles(std::vector<MPoint> &points, std::size_t anchor);
void showAllHandles(std::vector<MPoint> &points);

/// Draws the state the way the editor redraws it: clear, outline, hover marks, selection.
void redraw(OverlayCanvas &canvas, const Scene &scene);

/// 32-bit pixels (0xAARRGGBB), rows top to bottom.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;

    friend bool operator==(const Picture &, const Picture &) = default;
};

/// The state's picture from a component that has drawn nothing else.
Picture render(const Scene &scene);

/// Whether the random tests are to take their time (ORVANEL_LONG_TESTS=1).
bool longTests();

/// A copy of the surface, or of the part that the scene shows.
Picture copySurface(OverlayCanvas &canvas, const Scene &scene);

} // namespace canvas::testing
