// SPDX-License-Identifier: MIT
#include "mask/random_outline_test.h"

#include <cmath>
#include <cstdlib>
#include <cstring>

namespace Quill::test {
namespace {

MPoint point(std::uint32_t type, int x, int y) {
    return {type, x, y, 0, 0, 0};
}

MPoint within(Random &random, std::uint32_t type, int left, int top, int right, int bottom) {
    const int x = random.between(left, right);
    return point(type, x, random.between(top, bottom));
}

std::vector<MPoint> anywhere(Random &random, int anchors, int left, int top, int right, int bottom) {
    std::vector<MPoint> points;
    for (int i = 0; i < 3 * anchors; ++i)
        points.push_back(within(random, i % 3 == 0 ? kAnchorPoint : kControlPoint, left, top, right, bottom));
    return points;
}

/// Puts the controls of every segment at these places between its anchors, in quarters: 0 and 4 are the anchors.
void straighten(std::vector<MPoint> &points, int first, int second) {
    for (std::size_t i = 0; i < points.size(); i += 3) {
        const MPoint &a = points[i];
        const MPoint &b = points[(i + 3) % points.size()];
        const auto mix = [&](int quarters) {
            return point(kControlPoint, a.x + (b.x - a.x) * quarters / 4, a.y + (b.y - a.y) * quarters / 4);
        };
        points[i + 1] = mix(first);
        points[i + 2] = mix(second);
    }
}

std::vector<MPoint> smooth(Random &random, int anchors, int width, int height) {
    constexpr double kTurn = 6.283185307179586;
    const double cx = width * (0.3 + 0.4 * random.fraction());
    const double cy = height * (0.3 + 0.4 * random.fraction());
    const double handle = kTurn / anchors / 3;
    std::vector<double> radii;
    for (int i = 0; i < anchors; ++i)
        radii.push_back(0.2 + 0.6 * random.fraction());
    std::vector<MPoint> points;
    const auto add = [&](std::uint32_t type, double angle, double radius) {
        points.push_back(point(type, static_cast<int>(cx + width * radius / 2 * std::cos(angle)),
                               static_cast<int>(cy + height * radius / 2 * std::sin(angle))));
    };
    for (int i = 0; i < anchors; ++i) {
        const double here = kTurn * i / anchors;
        const double next = kTurn * (i + 1) / anchors;
        add(kAnchorPoint, here, radii[static_cast<std::size_t>(i)]);
        add(kControlPoint, here + handle, radii[static_cast<std::size_t>(i)]);
        add(kControlPoint, next - handle, radii[static_cast<std::size_t>((i + 1) % anchors)]);
    }
    return points;
}

std::vector<MPoint> steps(Random &random, int anchors, int width, int height) {
    std::vector<MPoint> points = anywhere(random, anchors, -2, -2, width + 2, height + 2);
    for (std::size_t i = 3; i < points.size(); i += 3)
        (i % 2 ? points[i].x : points[i].y) = i % 2 ? points[i - 3].x : points[i - 3].y;
    // The last anchor's other coordinate is the first one's, so that the way back is parallel to an axis too.
    MPoint &last = points[points.size() - 3];
    (anchors % 2 ? last.x : last.y) = anchors % 2 ? points[0].x : points[0].y;
    straighten(points, 1, 3);
    return points;
}

} // namespace

std::vector<MPoint> randomOutline(Random &random, OutlineKind kind, int anchors, int width, int height) {
    constexpr int kLargest = 8388607 + 2;
    switch (kind) {
    case OutlineKind::Straight: {
        std::vector<MPoint> points = anywhere(random, anchors, -width / 4, -height / 4, width * 5 / 4, height * 5 / 4);
        straighten(points, 1, 3);
        return points;
    }
    case OutlineKind::Smooth:
        return smooth(random, anchors, width, height);
    case OutlineKind::Wild:
        return anywhere(random, anchors, 0, 0, width, height);
    case OutlineKind::Beyond:
        return anywhere(random, anchors, -3 * width, -3 * height, 4 * width, 4 * height);
    case OutlineKind::Outside: {
        const int left = random.oneIn(2) ? width + 1 : -3 * width;
        return anywhere(random, anchors, left, -height, left + 2 * width - 2, 2 * height);
    }
    case OutlineKind::Tiny: {
        const int x = random.between(-2, width);
        const int y = random.between(-2, height);
        return anywhere(random, anchors, x, y, x + 4, y + 4);
    }
    case OutlineKind::Grid:
        return steps(random, anchors, width, height);
    case OutlineKind::Enormous: {
        const int reach = 1 << random.between(10, 23);
        const int limit = std::min(reach, random.oneIn(20) ? kLargest : kLargest - 2);
        return anywhere(random, anchors, -limit, -limit, limit, limit);
    }
    }
    return {};
}

int randomAnchorCount(Random &random) {
    if (random.oneIn(400))
        return random.between(200, 2000);
    if (random.oneIn(20))
        return random.between(20, 200);
    return random.between(3, 14);
}

std::vector<std::uint8_t> randomExclusion(Random &random, int width, int height) {
    std::vector<std::uint8_t> map(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
    const int sparsity = 1 << random.between(0, 8);
    for (std::size_t i = 0; i < map.size(); ++i)
        if (random.oneIn(sparsity)) {
            const auto length = static_cast<std::size_t>(random.between(1, 6));
            const int value = random.oneIn(4) ? random.between(0, 255) : 1;
            std::memset(map.data() + i, value, std::min(length, map.size() - i));
        }
    return map;
}

int iterations(int quick) {
    const char *longTests = std::getenv("ORVANEL_LONG_TESTS");
    return longTests && std::strcmp(longTests, "1") == 0 ? quick * 20 : quick;
}

} // namespace Quill::test
