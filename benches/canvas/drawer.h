// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <span>
#include <string>
#include <vector>

#include "canvas/look.h"
#include "canvas/testing/scenes.h"

namespace bench {

/// One implementation of the overlay, ours or a competitor's. All draw the same picture on a 32-bit surface: one
/// process, one thread, the same inputs.
class Drawer {
  public:
    virtual ~Drawer() = default;

    virtual const char *name() const = 0;
    virtual void resize(int width, int height) = 0;
    /// The outline's line with its dark edge. Ours clears the line before; others draw over it.
    virtual void stroke(const std::vector<MPoint> &points) = 0;
    /// Only the coloured core: half the work, for those to whom an edge is a second stroke.
    virtual void strokeCore(const std::vector<MPoint> &points) = 0;
    /// Everything: clear, fill if the state has one, line, handles, anchors, hover and selection marks.
    virtual void redraw(const canvas::testing::Scene &scene) = 0;
    /// What was drawn, with straight alpha.
    virtual canvas::testing::Picture picture() = 0;
};

using MakeDrawer = std::unique_ptr<Drawer> (*)();

std::unique_ptr<Drawer> makeOwnDrawer();
std::unique_ptr<Drawer> makeAggDrawer();
std::unique_ptr<Drawer> makeCairoDrawer();
/// Ours, and the competitors' that this system has.
std::vector<MakeDrawer> drawers();
/// What each draws of a state, where pictures can be written.
void writePictures(const std::string &folder, const canvas::testing::Scene &scene);

/// Marks of a state in the order they are drawn, for those who have no editor's redraw to follow.
struct Mark {
    MPoint point;
    bool round;
    double size;
    canvas::Pixel color;
};
std::vector<Mark> marksOf(const canvas::testing::Scene &scene);

/// Lines from anchors to shown handles.
struct HandleLine {
    MPoint anchor;
    MPoint control;
};
std::vector<HandleLine> handleLinesOf(const canvas::testing::Scene &scene);

} // namespace bench
