// SPDX-License-Identifier: MIT
#pragma once

// What is compared: an outline of cubic segments in, the runs of its mask out, even-odd, at a given size. Everybody
// gets the same points, flattens by its own means and keeps what it can from call to call.

#include <memory>
#include <string>
#include <vector>

#include "mask/mask_handler.h"

namespace bench {

using Outline = std::vector<MPoint>;
using Runs = std::vector<Quill::MaskRun>;

class Rasterizer {
  public:
    virtual ~Rasterizer() = default;

    /// Replaces `runs` by those of the outline. Rows may come in either order.
    virtual void encode(const Outline &outline, Runs &runs) = 0;
};

struct Contender {
    const char *name;
    std::unique_ptr<Rasterizer> (*make)(int width, int height);
    bool isPeer; ///< someone else's, to be compared with
};

std::unique_ptr<Rasterizer> makeDirect(int width, int height);
std::unique_ptr<Rasterizer> makeSurface(int width, int height);

/// Those that this system has.
std::vector<Contender> peers();
/// Our two ways, and the peers.
const std::vector<Contender> &contenders();

/// Calls `visit(start, control, control, end)` for each segment of a closed outline.
template <typename Visit>
void forEachSegment(const Outline &outline, Visit visit) {
    for (std::size_t i = 0; i < outline.size(); i += 3)
        visit(outline[i], outline[i + 1], outline[i + 2], outline[(i + 3) % outline.size()]);
}

/// Appends the runs of an 8-bit picture, pixels not zero.
void appendRuns(const unsigned char *pixels, std::ptrdiff_t stride, int width, int height, Runs &runs);

} // namespace bench
