// SPDX-License-Identifier: MIT
#include "agreement.h"

#include <cstdio>
#include <cstring>

#include "shapes.h"

namespace bench {
namespace {

using Picture = std::vector<unsigned char>;

Picture paint(const Runs &runs, const Size &size) {
    Picture picture(static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height), 0);
    for (const Quill::MaskRun &run : runs)
        std::memset(&picture[static_cast<std::size_t>(run.row) * static_cast<std::size_t>(size.width) + run.column], 1,
                    run.length);
    return picture;
}

/// Whether a pixel within four of this one has the other value: the place is on the outline.
bool nearOutline(const Picture &picture, const Size &size, int x, int y) {
    constexpr int kReach = 4;
    const auto at = [&](int px, int py) {
        const bool inside = px >= 0 && py >= 0 && px < size.width && py < size.height;
        return inside ? picture[static_cast<std::size_t>(py) * static_cast<std::size_t>(size.width) +
                                static_cast<std::size_t>(px)]
                      : 0;
    };
    for (int dy = -kReach; dy <= kReach; ++dy)
        for (int dx = -kReach; dx <= kReach; ++dx)
            if (at(x + dx, y + dy) != at(x, y))
                return true;
    return false;
}

} // namespace

bool everybodyDrewTheSame() {
    const Size &size = kSizes[1];
    bool agreed = true;
    for (const Shape &shape : kShapes) {
        const Outline outline = makeVariants(shape, size)[0];
        Runs runs;
        makeDirect(size.width, size.height)->encode(outline, runs);
        const Picture reference = paint(runs, size);
        for (const Contender &contender : contenders()) {
            contender.make(size.width, size.height)->encode(outline, runs);
            const Picture picture = paint(runs, size);
            std::size_t differing = 0;
            std::size_t elsewhere = 0;
            for (std::size_t i = 0; i < picture.size(); ++i)
                if (picture[i] != reference[i]) {
                    ++differing;
                    const int x = static_cast<int>(i) % size.width;
                    elsewhere += !nearOutline(reference, size, x, static_cast<int>(i) / size.width);
                }
            if (elsewhere > 0) {
                std::fprintf(stderr,
                             "%s drew something else for shape %s: %zu pixels differ, %zu of them off the outline\n",
                             contender.name, shape.name, differing, elsewhere);
                agreed = false;
            }
        }
    }
    return agreed;
}

} // namespace bench
